#version 120
uniform float timelife;
void main()
{
    vec3 v = gl_MultiTexCoord0.xyz;
    float t = gl_MultiTexCoord0.w;
    vec3 position = gl_Vertex.xyz + v * t + vec3(0.0, -130.0, 0.0) * t * t / 2.0;
    gl_Position = gl_ModelViewProjectionMatrix * vec4(position, 1.0);
    gl_FrontColor = vec4(gl_Color.rgb, 1.0 - t / timelife);
    gl_PointSize = 10.0;
}
