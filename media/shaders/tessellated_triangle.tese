layout(triangles, equal_spacing, ccw) in;
in vec4 Control_Color[];
out vec4 Vertex_Color;
void main()
{
    gl_Position = gl_TessCoord.x * gl_in[0].gl_Position + gl_TessCoord.y * gl_in[1].gl_Position +
                  gl_TessCoord.z * gl_in[2].gl_Position;
    Vertex_Color = gl_TessCoord.x * Control_Color[0] + gl_TessCoord.y * Control_Color[1] +
                   gl_TessCoord.z * Control_Color[2];
}
