uniform sampler2D colorMap;
in vec4 Vertex_Color;
out vec4 Out_Color;
void main()
{
    Out_Color = vec4(texture(colorMap, Vertex_Color.xy).rgb, 1.0);
}
