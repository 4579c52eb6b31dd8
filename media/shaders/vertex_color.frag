in vec4 Vertex_Color;
out vec4 Out_Color;
void main()
{
    Out_Color = Vertex_Color;
}
