uniform sampler2D tex;
uniform float w;
uniform float h;
void main()
{
    vec2 st = gl_TexCoord[0].st;
    vec2 dx = vec2(1.0 / w, 0.0), dy = vec2(0.0, 1.0 / h);
    vec4 sum = texture2D(tex, st) * 4.0;
    sum += (texture2D(tex, st - dx) + texture2D(tex, st + dx) + texture2D(tex, st - dy) + texture2D(tex, st + dy)) * 2.0;
    sum += texture2D(tex, st - dx - dy) + texture2D(tex, st + dx - dy) + texture2D(tex, st - dx + dy) +
           texture2D(tex, st + dx + dy);
    gl_FragColor = sum / 16.0;
}
