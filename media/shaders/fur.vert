uniform float UVScale;
uniform float FurLength;
uniform mat4 mv;
varying vec3 normal;
varying vec3 lightDir[2];
void main()
{
    vec4 P = vec4(gl_Vertex.xyz + gl_Normal * FurLength, 1.0);
    gl_TexCoord[0] = gl_MultiTexCoord0 * UVScale;
    gl_Position = gl_ModelViewProjectionMatrix * P;
    vec3 eyePosition = (gl_ModelViewMatrix * P).xyz;
    normal = gl_NormalMatrix * gl_Normal;
    lightDir[0] = (mv * vec4(20.0, 150.0, 100.0, 1.0)).xyz - eyePosition;
    lightDir[1] = (mv * vec4(-20.0, -150.0, 100.0, 1.0)).xyz - eyePosition;
}
