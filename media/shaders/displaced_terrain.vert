uniform sampler2D displacementMap;
uniform float time;
void main()
{
    gl_TexCoord[0] = gl_MultiTexCoord0;
    vec4 dm = texture2D(displacementMap, gl_MultiTexCoord0.st);
    float df = 0.30 * dm.r + 0.59 * dm.g + 0.11 * dm.b;
    float dnoise = 0.0;
    if (df > 0.3)
    {
        float px = gl_Vertex.x / 200.0, pz = gl_Vertex.z / 200.0;
        dnoise = (1.414 - sqrt(px * px + pz * pz)) * df * 10.0 * cos(2.0 * time) * sin(8.0 * time);
    }
    vec4 position = gl_Vertex;
    position.y = df * 120.0 + dnoise + gl_Vertex.y;
    gl_Position = gl_ModelViewProjectionMatrix * position;
}
