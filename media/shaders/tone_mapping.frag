// The radial blur samples the depth-of-field picture along the line to the blur centre; the bloom (the
// blurred bright pass) is added at its factor; the exposure scales the sum into the displayable range.
uniform sampler2D tex;
uniform sampler2D bloom;
uniform float exposure;
uniform float brightThreshold;
uniform float radialBlurFactor;
uniform float bloomFactor;
uniform float blurStart;
uniform float blurWidth;
uniform int blurSamples;
uniform vec2 blurCenter;
void main()
{
    vec2 st = gl_TexCoord[0].st;
    vec4 c = vec4(0.0);
    for (int i = 0; i < blurSamples; ++i)
    {
        float scale = blurStart + blurWidth * (float(i) / float(blurSamples - 1));
        c += texture2D(tex, (st - blurCenter) * scale + blurCenter);
    }
    c /= float(blurSamples);
    vec4 color = texture2D(tex, st) + c * radialBlurFactor + texture2D(bloom, st) * bloomFactor;
    float YD = exposure * (exposure / brightThreshold + 1.0) / (exposure + 1.0);
    gl_FragColor = vec4(color.rgb * YD, 1.0);
}
