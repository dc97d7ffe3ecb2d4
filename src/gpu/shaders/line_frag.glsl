#version 330 core

uniform vec4 lineColor = vec4(0.0, 0.0, 0.0, 1.0);

out vec4 f_color;

void main(void)
{
    f_color = lineColor;
}
