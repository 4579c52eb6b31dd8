#version 120
uniform sampler2D tex;
uniform samplerCube env;
uniform float reflectionFactor;
uniform vec3 IoR_Values;
uniform vec3 fresnelValues;
uniform float focalDistance;
uniform float focalRange;
varying vec3 N;
varying vec3 E;
varying float depth_z;
vec3 refraction(vec3 i, vec3 n, float eta)
{
    float cosi = dot(-i, n);
    float cost2 = 1.0 - eta * eta * (1.0 - cosi * cosi);
    vec3 t = eta * i + (eta * cosi - sqrt(abs(cost2))) * n;
    return cost2 > 0.0 ? t : vec3(0.0);
}
void main()
{
    vec3 n = normalize(N);
    vec3 i = normalize(E);
    vec3 reflectColor = textureCube(env, normalize(reflect(i, n))).rgb;
    vec3 refractColor;
    refractColor.r = textureCube(env, refraction(i, n, IoR_Values.x)).r;
    refractColor.g = textureCube(env, refraction(i, n, IoR_Values.y)).g;
    refractColor.b = textureCube(env, refraction(i, n, IoR_Values.z)).b;
    float fresnel = fresnelValues.x + pow(1.0 - dot(-i, n), fresnelValues.y) * (1.0 - fresnelValues.x);
    vec3 base = texture2D(tex, gl_TexCoord[0].st).rgb;
    gl_FragData[0] = vec4(mix(base, mix(refractColor, reflectColor, fresnel), reflectionFactor), 1.0);
    gl_FragData[1] = vec4(depth_z, clamp(abs(depth_z - focalDistance), 0.0, focalRange) / focalRange, 0.0, 0.0);
}
