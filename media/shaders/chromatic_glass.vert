#version 120
uniform mat4 ModelWorld4x4;
uniform vec3 eyePos;
varying vec3 N;
varying vec3 E;
varying float depth_z;
void main()
{
    gl_Position = ftransform();
    depth_z = gl_Position.z;
    N = mat3(ModelWorld4x4) * gl_Normal;
    E = (ModelWorld4x4 * gl_Vertex).xyz - eyePos;
    gl_TexCoord[0] = gl_MultiTexCoord0;
}
