uniform sampler2D SceneColorSampler;
uniform sampler2D DepthBlurSampler;
uniform float w;
uniform float h;
uniform float fMaxCoC;
uniform vec2 vFilterTaps[12];
void main()
{
    vec2 st = gl_TexCoord[0].st;
    vec4 sum = texture2D(SceneColorSampler, st);
    vec2 centre = texture2D(DepthBlurSampler, st).xy;
    float size = centre.y * fMaxCoC;
    float total = 1.0;
    for (int i = 0; i < 12; ++i)
    {
        vec2 at = st + vFilterTaps[i] * size;
        vec2 tap = texture2D(DepthBlurSampler, at).xy;
        float contribution = tap.x < centre.x ? centre.y : tap.y;
        sum += texture2D(SceneColorSampler, at) * contribution;
        total += contribution;
    }
    gl_FragColor = sum / total;
}
