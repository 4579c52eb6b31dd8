in vec4 In_Position;
in vec4 In_Color;
uniform mat4 WorldViewProjectionMatrix;
out vec4 Vertex_Color;
void main()
{
    gl_Position = WorldViewProjectionMatrix * In_Position;
    Vertex_Color = In_Color;
}
