// The deforming surface: one work item per vertex of a width x height grid over [-2, 2) on X and Z. Each
// writes its vertex lifted by a travelling wave and a bump in the middle, and the normal of the lifted
// surface. Two optional loads follow: `burn_loop_sin` rounds of sines and cosines, `burn_loop_mad` x 1000
// rounds of multiply-adds and a division; the forms with a check write their sums to `sincos`.

float deformerSin(float a, bool native) { return native ? native_sin(a) : sin(a); }
float deformerCos(float a, bool native) { return native ? native_cos(a) : cos(a); }
float deformerSqrt(float a, bool native) { return native ? native_sqrt(a) : sqrt(a); }

// The wave's normal is the plane's normal taken through the Jacobian of the lift, whose only non-trivial row
// is (c x, 1, c z).
float3 throughJacobian(float3 d, float c, float4 position)
{
    return (float3)(d.x, c * position.x * d.x + d.y + c * position.z * d.z, d.z);
}

void deform(__global float4* positions, __global float4* normals, uint width, uint height, float frequency,
            float time, uint burn_loop_sin, uint burn_loop_mad, __global float* sincos, bool native)
{
    const uint x = get_global_id(0);
    const uint y = get_global_id(1);
    if (x >= width || y >= height)
        return;

    const float u = ((float)x / (float)width * 2.0f - 1.0f) * 2.0f;
    const float v = ((float)y / (float)height * 2.0f - 1.0f) * 2.0f;
    float4 position = (float4)(u, 0.0f, v, 1.0f);
    const float3 normal = (float3)(0.0f, 1.0f, 0.0f);

    // The longer of the two candidate tangents; the second wins a tie.
    const float3 aroundZ = cross(normal, (float3)(0.0f, 0.0f, 1.0f));
    const float3 aroundY = cross(normal, (float3)(0.0f, 1.0f, 0.0f));
    const float3 tangent = normalize(length(aroundZ) > length(aroundY) ? aroundZ : aroundY);
    const float3 binormal = normalize(cross(normal, tangent));

    const float freq2 = frequency * (4.0f + 2.0f * deformerCos(0.8f * u, native));
    const float phase = 2.0f * time;
    float dist = deformerSqrt(u * u + v * v, native);
    position.y = 0.0f + 0.5f * deformerSin(freq2 * dist + phase, native) + 1.0f / (dist + 0.6f);

    dist = deformerSqrt(position.x * position.x + position.z * position.z, native);
    const float c = deformerCos(freq2 * dist + phase, native) / (dist + 0.00001f);
    const float3 uPrime = throughJacobian(tangent, c, position);
    const float3 vPrime = throughJacobian(binormal, c, position);
    const float3 lifted = normalize(cross(vPrime, uPrime));

    const uint offset = y * width + x;
    positions[offset] = position;
    normals[offset] = (float4)(lifted, 0.0f);

    const float pi = 4.0f * atan(1.0f);
    float cs = 0.0f;
    for (uint i = 0; i < burn_loop_sin; ++i) {
        const float a = deformerCos(pi * (float)x, native);
        const float b = deformerSin(pi * (float)y, native);
        cs += deformerSqrt(a * a + b * b, native);
    }
    if (sincos)
        sincos[offset] = cs;

    float sum = 0.0f;
    for (uint round = 0; round < burn_loop_mad; ++round) {
        for (uint i = 0; i < 1000; ++i) {
            // The fixed multiply-adds of the load; only the second sum reaches the result.
            const float squares = 0.2569f * 0.2569f + 0.5569f * 0.5569f + 0.45698f * 0.45698f +
                                  0.85214f * 0.85214f + 0.357f * 0.357f + 0.9524f * 0.9524f +
                                  0.6259f * 0.6259f + 0.558f * 0.558f;
            (void)squares;
            sum += 1.0f / (position.x * position.x + position.y * position.y + position.z * position.z + 0.001f);
        }
    }
    if (sincos)
        sincos[offset] = cs + sum;
}

__kernel void surface_deformer(__global float4* positions, __global float4* normals, uint width, uint height,
                               float frequency, float time, uint burn_loop_sin, uint burn_loop_mad)
{
    deform(positions, normals, width, height, frequency, time, burn_loop_sin, burn_loop_mad, 0, false);
}

__kernel void surface_deformer_native_sin(__global float4* positions, __global float4* normals, uint width,
                                          uint height, float frequency, float time, uint burn_loop_sin,
                                          uint burn_loop_mad)
{
    deform(positions, normals, width, height, frequency, time, burn_loop_sin, burn_loop_mad, 0, true);
}

__kernel void surface_deformer_with_check(__global float4* positions, __global float4* normals, uint width,
                                          uint height, float frequency, float time, uint burn_loop_sin,
                                          uint burn_loop_mad, __global float* sincos)
{
    deform(positions, normals, width, height, frequency, time, burn_loop_sin, burn_loop_mad, sincos, false);
}

__kernel void surface_deformer_with_check_native_sin(__global float4* positions, __global float4* normals,
                                                     uint width, uint height, float frequency, float time,
                                                     uint burn_loop_sin, uint burn_loop_mad,
                                                     __global float* sincos)
{
    deform(positions, normals, width, height, frequency, time, burn_loop_sin, burn_loop_mad, sincos, true);
}
