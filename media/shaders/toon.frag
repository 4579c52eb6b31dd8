uniform float silhouetteThreshold;
varying vec3 normal;
varying vec3 eyePosition;
void main()
{
    vec3 v = eyePosition;
    vec3 N = normalize(normal);
    vec3 E = normalize(normalize(-v) - v);
    vec3 L = normalize(gl_LightSource[0].position.xyz - v);
    vec3 H = normalize(L + E);
    if (max(dot(N, E), 0.0) < silhouetteThreshold)
    {
        gl_FragColor = vec4(0.0, 0.0, 0.0, 1.0);
        return;
    }
    vec4 color = gl_FrontMaterial.diffuse;
    float specular = pow(max(dot(N, H), 0.0), 90.0);
    if (specular < 0.2)
        color *= 0.76;
    else
        color = gl_FrontMaterial.specular;
    if (max(dot(N, L), 0.0) < 0.5)
        color *= 0.7;
    gl_FragColor = vec4(color.rgb, 1.0);
}
