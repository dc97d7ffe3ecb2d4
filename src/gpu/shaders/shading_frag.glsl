#version 330 core

// Phong lighting in view space with up to ten lights, and a toon option that
// quantises the diffuse and specular terms into bands.
#define M_MAX_LIGHTS 10
#define M_DIRECTIONAL_LIGHT 0
#define M_POINT_LIGHT 1
#define M_SPOT_LIGHT 2

struct Light
{
    int type;
    vec3 position;  // view space; the direction towards the light for a directional one
    vec3 direction; // where a spot points
    vec3 ambient;
    vec3 diffuse;
    vec3 specular;
    vec3 attenuation; // constant, linear, quadratic
    float cutOff;     // cosine of the spot's half angle
    float outerCutOff;
};

struct Material
{
    vec3 ambient;
    vec3 diffuse;
    vec3 specular;
    float shininess;
};

in vec3 v_position;
in vec3 v_normal;
in vec4 v_color;
in vec2 v_texCoords0;

uniform Light lights[M_MAX_LIGHTS];
uniform int lightCount = 0;
uniform Material material = Material(vec3(0.1), vec3(1.0), vec3(0.5), 32.0);
uniform bool useVertexColor = true;
uniform bool toon = false;
uniform int toonLevels = 4;
uniform float f_opacity = 1.0;

out vec4 f_color;

float band(float value)
{
    float levels = float(max(toonLevels, 1));
    return floor(value * levels + 0.5) / levels;
}

vec3 lightContribution(Light light, vec3 normal, vec3 viewDirection, vec3 baseColor)
{
    vec3 toLight;
    float attenuation = 1.0;
    if (light.type == M_DIRECTIONAL_LIGHT) {
        toLight = normalize(light.position);
    } else {
        vec3 offset = light.position - v_position;
        float distance = length(offset);
        toLight = offset / max(distance, 1e-6);
        attenuation = 1.0 / max(light.attenuation.x + light.attenuation.y * distance
                                    + light.attenuation.z * distance * distance,
                                1e-6);
    }

    float diffuse = max(dot(normal, toLight), 0.0);
    vec3 reflected = reflect(-toLight, normal);
    float specular = diffuse > 0.0 ? pow(max(dot(viewDirection, reflected), 0.0), material.shininess) : 0.0;
    if (toon) {
        diffuse = band(diffuse);
        specular = step(0.5, specular);
    }

    float spot = 1.0;
    if (light.type == M_SPOT_LIGHT) {
        float theta = dot(-toLight, normalize(light.direction));
        float epsilon = max(light.cutOff - light.outerCutOff, 1e-6);
        spot = clamp((theta - light.outerCutOff) / epsilon, 0.0, 1.0);
    }

    vec3 ambient = light.ambient * material.ambient * baseColor;
    vec3 lit = light.diffuse * diffuse * material.diffuse * baseColor + light.specular * specular * material.specular;
    return attenuation * (ambient + spot * lit);
}

void main(void)
{
    vec3 normal = normalize(v_normal);
    if (!gl_FrontFacing)
        normal = -normal;
    vec3 viewDirection = normalize(-v_position);
    vec3 baseColor = useVertexColor ? v_color.rgb : vec3(1.0);
    float alpha = useVertexColor ? v_color.a : 1.0;

    vec3 color = vec3(0.0);
    int count = clamp(lightCount, 0, M_MAX_LIGHTS);
    for (int i = 0; i < count; ++i)
        color += lightContribution(lights[i], normal, viewDirection, baseColor);
    if (count == 0)
        color = baseColor;

    alpha *= f_opacity;
    f_color = vec4(clamp(color, 0.0, 1.0) * alpha, alpha);
}
