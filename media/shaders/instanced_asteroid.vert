uniform vec4 position[ARRAY_SIZE];
uniform vec4 rotation[ARRAY_SIZE];
uniform mat4 ViewMat4x4;
uniform vec4 light_position[2];
varying vec3 normal;
varying vec3 eyeVec;
varying vec3 lightDir[2];
void main()
{
    vec4 q = rotation[gl_InstanceID];
    mat3 turn = mat3(1.0 - 2.0 * (q.y * q.y + q.z * q.z), 2.0 * (q.x * q.y + q.z * q.w), 2.0 * (q.x * q.z - q.y * q.w),
                     2.0 * (q.x * q.y - q.z * q.w), 1.0 - 2.0 * (q.x * q.x + q.z * q.z), 2.0 * (q.y * q.z + q.x * q.w),
                     2.0 * (q.x * q.z + q.y * q.w), 2.0 * (q.y * q.z - q.x * q.w), 1.0 - 2.0 * (q.x * q.x + q.y * q.y));
    mat4 model = mat4(vec4(turn[0], 0.0), vec4(turn[1], 0.0), vec4(turn[2], 0.0),
                      vec4(position[gl_InstanceID].xyz, 1.0));
    mat4 modelView = ViewMat4x4 * model;
    vec4 P = modelView * gl_Vertex;
    normal = mat3(modelView) * gl_Normal;
    for (int i = 0; i < 2; ++i)
        lightDir[i] = (ViewMat4x4 * light_position[i]).xyz - P.xyz;
    eyeVec = -P.xyz;
    gl_TexCoord[0] = gl_MultiTexCoord0;
    gl_Position = gl_ProjectionMatrix * P;
}
