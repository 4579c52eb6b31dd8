uniform mat4 ViewMat4x4;
uniform vec4 light_position[2];
varying vec3 normal;
varying vec3 eyeVec;
varying vec3 lightDir[2];
void main()
{
    vec4 P = gl_ModelViewMatrix * gl_Vertex;
    normal = gl_NormalMatrix * gl_Normal;
    for (int i = 0; i < 2; ++i)
        lightDir[i] = (ViewMat4x4 * light_position[i]).xyz - P.xyz;
    eyeVec = -P.xyz;
    gl_TexCoord[0] = gl_MultiTexCoord0;
    gl_Position = ftransform();
}
