varying vec4 projCoord;
varying vec3 normal;
varying vec3 lightDir;
varying vec3 eyeVec;
void main()
{
    vec4 eyePosition = gl_ModelViewMatrix * gl_Vertex;
    projCoord = gl_TextureMatrix[0] * eyePosition;
    normal = gl_NormalMatrix * gl_Normal;
    lightDir = gl_LightSource[0].position.xyz - eyePosition.xyz;
    eyeVec = -eyePosition.xyz;
    gl_TexCoord[1] = gl_MultiTexCoord1;
    gl_Position = ftransform();
}
