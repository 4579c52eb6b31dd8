layout(vertices = 3) out;
uniform float tessLevelOuter;
uniform float tessLevelInner;
out vec4 Control_Color[];
void main()
{
    vec4 position = gl_in[gl_InvocationID].gl_Position;
    gl_out[gl_InvocationID].gl_Position = position;
    float y = (1.0 + sin(position.y)) * 0.5;
    Control_Color[gl_InvocationID] = vec4(1.0 - y, y, 0.0, 1.0);
    gl_TessLevelOuter[0] = tessLevelOuter;
    gl_TessLevelOuter[1] = tessLevelOuter;
    gl_TessLevelOuter[2] = tessLevelOuter;
    gl_TessLevelInner[0] = tessLevelInner;
}
