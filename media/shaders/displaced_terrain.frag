uniform sampler2D colorMap;
void main()
{
    gl_FragColor = vec4(texture2D(colorMap, gl_TexCoord[0].st).rgb, 1.0);
}
