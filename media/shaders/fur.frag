uniform sampler2D tigerMap;
uniform sampler2D furMap;
uniform float Layer;
varying vec3 normal;
varying vec3 lightDir[2];
void main()
{
    float k = pow(1.0 - Layer, 1.2);
    vec4 fur = texture2D(furMap, gl_TexCoord[0].st);
    fur.a *= k;
    vec4 base = texture2D(tigerMap, gl_TexCoord[0].st) * fur;
    vec3 N = normalize(normal);
    vec4 color = vec4(0.0);
    for (int i = 0; i < 2; ++i)
    {
        float lambert = clamp(dot(N, normalize(lightDir[i])), 0.0, 1.0);
        color += gl_LightSource[i].ambient * gl_FrontMaterial.ambient * base;
        color += gl_LightSource[i].diffuse * gl_FrontMaterial.diffuse * lambert * base;
    }
    gl_FragColor = vec4(color.rgb, base.a);
}
