#define NUM_LIGHTS 13
in vec4 In_Position;
in vec4 In_Normal;
in vec4 In_Color;
uniform mat4 WorldMatrix;
uniform mat4 ViewMatrix;
uniform mat4 ProjectionMatrix;
uniform vec4 lightsPosition[NUM_LIGHTS];
uniform int numLights;
out vec3 Normal;
out vec3 EyeVector;
out vec3 LightDirection[NUM_LIGHTS];
out vec4 Vertex_Color;
void main()
{
    mat4 modelView = ViewMatrix * WorldMatrix;
    vec4 viewPosition = modelView * In_Position;
    Normal = mat3(modelView) * In_Normal.xyz;
    EyeVector = -viewPosition.xyz;
    for (int i = 0; i < LIGHT_LOOP_END; ++i)
        LightDirection[i] = lightsPosition[i].xyz - viewPosition.xyz;
    Vertex_Color = In_Color;
    gl_Position = ProjectionMatrix * viewPosition;
}
