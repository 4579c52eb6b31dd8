uniform vec4 partColor;
out vec4 Out_Color;
void main()
{
    Out_Color = partColor;
}
