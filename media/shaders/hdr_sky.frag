uniform samplerCube env;
uniform float skyDepth;
void main()
{
    gl_FragData[0] = vec4(textureCube(env, gl_TexCoord[0].xyz).rgb, 1.0);
    gl_FragData[1] = vec4(skyDepth, 1.0, 0.0, 0.0);
}
