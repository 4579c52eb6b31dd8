// A quaternion Julia set, z -> z^2 + mu, cut by the space w = 0 and drawn by ray marching: each work item is
// one pixel of a square picture, row by row from the bottom, in bytes blue, green, red, alpha. Rays leave a
// camera on the Z axis; a ray that meets the set is lit in the diffuse colour, one that misses stays black.

#define ITERATIONS 10
#define ESCAPE_SQUARED 16.0f
#define BOUNDING_RADIUS 2.0f
#define MARCH_LIMIT 160
#define CAMERA_DISTANCE 3.0f
#define FOCAL_LENGTH 2.0f

float4 quaternionProduct(float4 a, float4 b)
{
    return (float4)(a.x * b.x - a.y * b.y - a.z * b.z - a.w * b.w,
                    a.x * b.y + a.y * b.x + a.z * b.w - a.w * b.z,
                    a.x * b.z - a.y * b.w + a.z * b.x + a.w * b.y,
                    a.x * b.w + a.y * b.z - a.z * b.y + a.w * b.x);
}

float4 quaternionSquare(float4 a)
{
    return (float4)(a.x * a.x - a.y * a.y - a.z * a.z - a.w * a.w, 2.0f * a.x * a.y, 2.0f * a.x * a.z,
                    2.0f * a.x * a.w);
}

// A lower bound of the distance from p to the set, from the orbit of p and its derivative; negative or tiny
// inside.
float distanceToSet(float3 p, float4 mu)
{
    float4 z = (float4)(p, 0.0f);
    float4 dz = (float4)(1.0f, 0.0f, 0.0f, 0.0f);
    for (int i = 0; i < ITERATIONS; ++i) {
        dz = 2.0f * quaternionProduct(z, dz);
        z = quaternionSquare(z) + mu;
        if (dot(z, z) > ESCAPE_SQUARED)
            break;
    }
    const float r = length(z);
    const float dr = max(length(dz), 1e-20f);
    return 0.5f * r * log(max(r, 1e-20f)) / dr;
}

float3 surfaceNormal(float3 p, float4 mu, float delta)
{
    const float3 dx = (float3)(delta, 0.0f, 0.0f);
    const float3 dy = (float3)(0.0f, delta, 0.0f);
    const float3 dz = (float3)(0.0f, 0.0f, delta);
    const float3 gradient = (float3)(distanceToSet(p + dx, mu) - distanceToSet(p - dx, mu),
                                     distanceToSet(p + dy, mu) - distanceToSet(p - dy, mu),
                                     distanceToSet(p + dz, mu) - distanceToSet(p - dz, mu));
    const float length2 = dot(gradient, gradient);
    return length2 > 0.0f ? gradient * rsqrt(length2) : (float3)(0.0f, 0.0f, 1.0f);
}

uint packBgra(float3 rgb)
{
    const float3 c = clamp(rgb, 0.0f, 1.0f) * 255.0f;
    return (uint)c.z | ((uint)c.y << 8) | ((uint)c.x << 16) | (255u << 24);
}

// The picture is as wide as the range: the program runs it over exactly its size.
__kernel void QJuliaKernel(__global uint* output, float4 mu, float4 diffuse, float epsilon)
{
    const int x = get_global_id(0);
    const int y = get_global_id(1);
    const int width = get_global_size(0);
    const int height = get_global_size(1);

    const float3 eye = (float3)(0.0f, 0.0f, CAMERA_DISTANCE);
    const float3 direction = normalize((float3)((2.0f * x + 1.0f) / width - 1.0f, (2.0f * y + 1.0f) / height - 1.0f,
                                                -FOCAL_LENGTH));
    uint colour = 0;

    // Only the part of the ray inside the sphere that holds the set is marched.
    const float b = dot(eye, direction);
    const float c = dot(eye, eye) - BOUNDING_RADIUS * BOUNDING_RADIUS;
    const float discriminant = b * b - c;
    if (discriminant > 0.0f) {
        const float root = sqrt(discriminant);
        float t = max(-b - root, 0.0f);
        const float leave = -b + root;
        int step = 0;
        bool hit = false;
        float3 p = eye + t * direction;
        for (; step < MARCH_LIMIT && t < leave; ++step) {
            p = eye + t * direction;
            const float d = distanceToSet(p, mu);
            if (d < epsilon) {
                hit = true;
                break;
            }
            t += d;
        }
        if (hit) {
            const float3 n = surfaceNormal(p, mu, epsilon);
            const float3 light = normalize((float3)(-0.5f, 0.8f, 0.6f));
            const float lambert = max(dot(n, light), 0.0f);
            const float specular = pow(max(dot(-light - 2.0f * dot(n, -light) * n, -direction), 0.0f), 30.0f);
            // Crevices take many steps to reach: darken by the steps taken.
            const float occlusion = 1.0f - 0.6f * (float)step / (float)MARCH_LIMIT;
            const float3 rgb = diffuse.xyz * (0.2f + 0.8f * lambert) * occlusion + (float3)(0.5f * specular);
            colour = packBgra(rgb);
        }
    }
    output[y * width + x] = colour;
}
