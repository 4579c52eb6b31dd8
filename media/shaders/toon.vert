varying vec3 normal;
varying vec3 eyePosition;
void main()
{
    normal = gl_NormalMatrix * gl_Normal;
    eyePosition = (gl_ModelViewMatrix * gl_Vertex).xyz;
    gl_Position = ftransform();
}
