uniform sampler2D colorMap;
void main()
{
    vec4 texel = texture2D(colorMap, gl_TexCoord[1].st);
    gl_FragColor = vec4((gl_LightModel.ambient * gl_FrontMaterial.ambient * texel).rgb, 1.0);
}
