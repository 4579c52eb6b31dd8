// The kernel's normals face down, away from the light above: lambert is the negated cosine.
uniform vec4 matDiffuse;
in vec3 Normal;
in vec3 EyeVector;
in vec3 LightDirection;
out vec4 Out_Color;
void main()
{
    const vec4 lightDiffuse = vec4(0.8, 0.4, 0.4, 1.0);
    const vec4 lightSpecular = vec4(0.6, 0.6, 0.6, 1.0);
    const vec4 materialSpecular = vec4(0.9, 0.9, 0.9, 1.0);
    const float shininess = 90.0;
    vec3 N = normalize(Normal);
    vec3 L = normalize(LightDirection);
    vec3 E = normalize(EyeVector);
    vec4 color = vec4(0.0, 0.0, 0.0, 1.0);
    float lambert = -dot(N, L);
    if (lambert > 0.0)
    {
        color += lightDiffuse * matDiffuse * lambert;
        float specular = pow(max(dot(reflect(-L, N), E), 0.0), shininess);
        color += lightSpecular * materialSpecular * specular * lambert;
    }
    Out_Color = vec4(color.rgb, 1.0);
}
