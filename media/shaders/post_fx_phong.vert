in vec4 In_Position;
in vec4 In_Normal;
uniform mat4 WorldMatrix;
uniform mat4 ViewMatrix;
uniform mat4 ProjectionMatrix;
out vec3 Normal;
out vec3 EyeVector;
out vec3 LightDirection;
void main()
{
    const vec4 lightPosition = vec4(20.0, 100.0, 500.0, 1.0);
    mat4 modelView = ViewMatrix * WorldMatrix;
    vec4 viewPosition = modelView * In_Position;
    Normal = mat3(modelView) * In_Normal.xyz;
    EyeVector = -viewPosition.xyz;
    LightDirection = (ViewMatrix * lightPosition).xyz - viewPosition.xyz;
    gl_Position = ProjectionMatrix * viewPosition;
}
