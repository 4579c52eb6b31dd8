in vec4 In_Position;
uniform mat4 WorldViewProjectionMatrix;
void main()
{
    gl_Position = WorldViewProjectionMatrix * In_Position;
}
