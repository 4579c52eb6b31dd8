uniform sampler2DShadow shadowMap;
uniform sampler2D colorMap;
uniform float filter_scale;
varying vec4 projCoord;
varying vec3 normal;
varying vec3 lightDir;
varying vec3 eyeVec;
void main()
{
    vec2 taps[12];
    taps[0] = vec2(0.617481, -0.613392);
    taps[1] = vec2(-0.040254, 0.170019);
    taps[2] = vec2(0.791925, -0.299417);
    taps[3] = vec2(0.493210, 0.645680);
    taps[4] = vec2(0.027070, 0.421003);
    taps[5] = vec2(-0.271096, -0.817194);
    taps[6] = vec2(-0.668203, -0.705374);
    taps[7] = vec2(-0.108615, 0.977050);
    taps[8] = vec2(0.142369, 0.063326);
    taps[9] = vec2(0.326090, -0.667531);
    taps[10] = vec2(-0.295755, -0.098422);
    taps[11] = vec2(0.215369, -0.885922);
    vec3 place = projCoord.xyz / projCoord.q;
    float shadow = 0.0;
    for (int i = 0; i < 12; ++i)
        shadow += shadow2D(shadowMap, place + vec3(taps[i] * filter_scale, 0.0)).r;
    shadow /= 12.0;

    vec4 texel = texture2D(colorMap, gl_TexCoord[1].st);
    vec3 N = normalize(normal);
    vec3 L = normalize(lightDir);
    vec3 E = normalize(eyeVec);
    vec4 color = gl_LightSource[0].ambient * gl_FrontMaterial.ambient * texel;
    float lambert = dot(N, L);
    if (lambert > 0.0)
    {
        color += gl_LightSource[0].diffuse * gl_FrontMaterial.diffuse * lambert * texel;
        color += gl_LightSource[0].specular * gl_FrontMaterial.specular *
                 pow(max(dot(reflect(-L, N), E), 0.0), gl_FrontMaterial.shininess);
    }
    gl_FragColor = vec4(color.rgb * shadow, gl_FrontMaterial.diffuse.a);
}
