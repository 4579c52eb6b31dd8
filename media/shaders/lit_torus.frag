#define NUM_LIGHTS 13
uniform vec4 lightsDiffuse[NUM_LIGHTS];
uniform int numLights;
in vec3 Normal;
in vec3 EyeVector;
in vec3 LightDirection[NUM_LIGHTS];
in vec4 Vertex_Color;
out vec4 Out_Color;
void main()
{
    const vec4 lightDiffuse = vec4(0.1, 0.1, 0.1, 1.0);
    const vec4 materialDiffuse = vec4(0.8, 0.8, 0.8, 1.0);
    const vec4 materialSpecular = vec4(0.9, 0.9, 0.9, 1.0);
    const float shininess = 90.0;
    vec3 N = normalize(Normal);
    vec3 E = normalize(EyeVector);
    vec4 color = vec4(0.0);
    for (int i = 0; i < LIGHT_LOOP_END; ++i)
    {
        vec3 L = normalize(LightDirection[i]);
        float lambert = dot(N, L);
        if (lambert > 0.0)
        {
            color += lightDiffuse * materialDiffuse * lambert;
            float specular = pow(max(dot(reflect(-L, N), E), 0.0), shininess);
            color += lightsDiffuse[i] * materialSpecular * specular * lambert;
        }
    }
    Out_Color = vec4(color.rgb, 1.0);
}
