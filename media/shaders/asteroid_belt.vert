varying vec3 normal;
varying vec3 eyeVec;
void main()
{
    normal = gl_NormalMatrix * gl_Normal;
    eyeVec = -(gl_ModelViewMatrix * gl_Vertex).xyz;
    gl_TexCoord[0] = gl_MultiTexCoord0;
    gl_Position = ftransform();
}
