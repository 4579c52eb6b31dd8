uniform sampler2D colorMap;
uniform vec4 light_diffuse[2];
varying vec3 normal;
varying vec3 eyeVec;
varying vec3 lightDir[2];
void main()
{
    vec4 texel = texture2D(colorMap, gl_TexCoord[0].st);
    vec3 N = normalize(normal);
    vec3 E = normalize(eyeVec);
    vec4 color = 0.02 * gl_FrontMaterial.ambient * texel;
    for (int i = 0; i < 2; ++i)
    {
        vec3 L = normalize(lightDir[i]);
        float lambert = dot(N, L);
        if (lambert > 0.0)
        {
            color += light_diffuse[i] * gl_FrontMaterial.diffuse * lambert * texel;
            color += 0.1 * gl_FrontMaterial.specular *
                     pow(max(dot(reflect(-L, N), E), 0.0), gl_FrontMaterial.shininess) * lambert;
        }
    }
    gl_FragColor = vec4(color.rgb, 1.0);
}
