#version 120
uniform sampler2D colorMap;
void main()
{
    gl_FragColor = vec4(texture2D(colorMap, gl_PointCoord).rgb * gl_Color.rgb, gl_Color.a);
}
