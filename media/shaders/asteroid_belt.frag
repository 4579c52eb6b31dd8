uniform sampler2D colorMap;
varying vec3 normal;
varying vec3 eyeVec;
void main()
{
    float facing = abs(dot(normalize(normal), normalize(eyeVec)));
    gl_FragColor = vec4(texture2D(colorMap, gl_TexCoord[0].st).rgb * facing, 1.0);
}
