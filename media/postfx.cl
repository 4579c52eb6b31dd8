// A glow filter over a rendered frame: each pixel becomes the mean of the pixels within a disc of `radius`
// around it, where pixels brighter than `threshold` count `highlight` times over. One uint a pixel, its bytes
// 0, 1 and 2 the colour channels; byte 3 of the result is 0. Pixels beyond the edges repeat the edge.

uint pixelAt(__global const uint* data, int x, int y, int w, int h)
{
    x = clamp(x, 0, w - 1);
    y = clamp(y, 0, h - 1);
    return data[y * w + x];
}

float3 channels(uint pixel)
{
    return (float3)((float)(pixel & 0xFF), (float)((pixel >> 8) & 0xFF), (float)((pixel >> 16) & 0xFF));
}

uint packMean(float3 sum, float count)
{
    const float3 mean = clamp(sum / count, 0.0f, 255.0f);
    return (uint)mean.x | ((uint)mean.y << 8) | ((uint)mean.z << 16);
}

// Each work item reads its disc straight from global memory.
__kernel void post_fx_kernel_global_mem(__global const uint* g_data, __global uint* g_odata, int imgw, int imgh,
                                        int tilew, int radius, float threshold, float highlight)
{
    const int x = get_global_id(0);
    const int y = get_global_id(1);
    if (x >= imgw || y >= imgh)
        return;
    float3 sum = (float3)(0.0f);
    float count = 0.0f;
    for (int dy = -radius; dy < radius + 1; ++dy) {
        for (int dx = -radius; dx < radius + 1; ++dx) {
            if (dx * dx + dy * dy > radius * radius)
                continue;
            float3 c = channels(pixelAt(g_data, x + dx, y + dy, imgw, imgh));
            const float lum = (c.x + c.y + c.z) / (255.0f * 3.0f);
            if (lum > threshold)
                c *= highlight;
            sum += c;
            count += 1.0f;
        }
    }
    g_odata[y * imgw + x] = packMean(sum, count);
}

// The work group first copies its tile and a border of `radius` pixels into local memory (row stride
// `tilew`), then every work item reads its disc from there.
__kernel void post_fx_kernel_local_mem(__global const uint* g_data, __global uint* g_odata, int imgw, int imgh,
                                       int tilew, int radius, float threshold, float highlight,
                                       __local uint* sdata)
{
    const int tx = get_local_id(0);
    const int ty = get_local_id(1);
    const int bw = get_local_size(0);
    const int bh = get_local_size(1);
    const int x = get_global_id(0);
    const int y = get_global_id(1);

    // The group's own pixels.
    sdata[(ty + radius) * tilew + tx + radius] = pixelAt(g_data, x, y, imgw, imgh);
    // Left and right strips, by the first `radius` work items of each row.
    if (tx < radius) {
        sdata[(ty + radius) * tilew + tx] = pixelAt(g_data, x - radius, y, imgw, imgh);
        sdata[(ty + radius) * tilew + tx + bw + radius] = pixelAt(g_data, x + bw, y, imgw, imgh);
    }
    // Top and bottom strips, by the first `radius` work items of each column.
    if (ty < radius) {
        sdata[ty * tilew + tx + radius] = pixelAt(g_data, x, y - radius, imgw, imgh);
        sdata[(ty + bh + radius) * tilew + tx + radius] = pixelAt(g_data, x, y + bh, imgw, imgh);
    }
    // The four corners.
    if (tx < radius && ty < radius) {
        sdata[ty * tilew + tx] = pixelAt(g_data, x - radius, y - radius, imgw, imgh);
        sdata[ty * tilew + tx + bw + radius] = pixelAt(g_data, x + bw, y - radius, imgw, imgh);
        sdata[(ty + bh + radius) * tilew + tx] = pixelAt(g_data, x - radius, y + bh, imgw, imgh);
        sdata[(ty + bh + radius) * tilew + tx + bw + radius] = pixelAt(g_data, x + bw, y + bh, imgw, imgh);
    }
    barrier(CLK_LOCAL_MEM_FENCE);
    if (x >= imgw || y >= imgh)
        return;

    float3 sum = (float3)(0.0f);
    float count = 0.0f;
    for (int dy = -radius; dy < radius + 1; ++dy) {
        for (int dx = -radius; dx < radius + 1; ++dx) {
            if (dx * dx + dy * dy > radius * radius)
                continue;
            float3 c = channels(sdata[(ty + radius + dy) * tilew + tx + radius + dx]);
            const float lum = (c.x + c.y + c.z) * 0.001307189542f;
            if (lum > threshold)
                c *= highlight;
            sum += c;
            count += 1.0f;
        }
    }
    g_odata[y * imgw + x] = packMean(sum, count);
}
