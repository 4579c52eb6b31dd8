uniform sampler2D tex;
uniform float brightThreshold;
void main()
{
    vec4 color = texture2D(tex, gl_TexCoord[0].st);
    float luminance = dot(vec4(0.30, 0.59, 0.11, 0.0), color);
    gl_FragColor = luminance > brightThreshold ? color : vec4(0.0);
}
