/*
 * The corners of what is drawn are the numbers of nodes and elements; places, displacements and results are in textures
 * that these numbers lead to. So a change of the step replaces a texture, and a change of the scale or of the colours a
 * number.
 */
export const TextureWidth = 2048;

const Head = `
precision highp float;
precision highp int;
precision highp sampler2D;
`;

const Places = `
uniform mat4 modelViewMatrix;
uniform mat4 projectionMatrix;
uniform sampler2D uPositions;
uniform sampler2D uMoves;
uniform sampler2D uValues;
uniform sampler2D uStates;
uniform float uFactor;
uniform bool uByElement;
uniform float uDraws;
uniform uint uFirst;
out vec3 vPlace;
out vec3 vView;
out vec2 vValue;
flat out uint vElement;
flat out uint vFigure;

ivec2 at(uint number) {
    return ivec2(int(number % ${TextureWidth}u), int(number / ${TextureWidth}u));
}
vec3 placeOf(uint node) {
    return texelFetch(uPositions, at(node), 0).xyz + uFactor * texelFetch(uMoves, at(node), 0).xyz;
}
vec4 show(vec3 place, uint node, uint element, uint figure) {
    vPlace = place;
    vec4 view = modelViewMatrix * vec4(place, 1.0);
    vView = view.xyz;
    vValue = texelFetch(uValues, at(uByElement ? element : node), 0).xy;
    vElement = element;
    vFigure = figure;
    bool isHidden = texelFetch(uStates, at(element), 0).x > 0.5;
    return isHidden ? vec4(2.0, 2.0, 2.0, 1.0) : projectionMatrix * view;
}
`;

/** Triangles and edges: three or two corners each. */
export const FigureVertex = `${Head}${Places}
uniform uint uCorners;
in uint node;
in uint element;
void main() {
    gl_Position = show(placeOf(node), node, element, uFirst + uint(gl_VertexID) / uCorners);
}`;

/** Line elements, each a rectangle of six corners that faces the viewer. */
export const LineVertex = `${Head}${Places}
uniform vec2 uWindow;
uniform float uWidth;
in uint node;
in uint other;
in uint element;
void main() {
    vec4 here = show(placeOf(node), node, element, uFirst + uint(gl_VertexID) / 6u);
    vec4 there = projectionMatrix * modelViewMatrix * vec4(placeOf(other), 1.0);
    uint corner = uint(gl_VertexID) % 6u;
    bool isEnd = corner == 2u || corner == 3u || corner == 5u;
    float side = corner == 0u || corner == 2u || corner == 3u ? 1.0 : -1.0;
    vec2 along = (there.xy - here.xy) * uWindow * (isEnd ? -1.0 : 1.0);
    vec2 across = length(along) > 0.0 ? normalize(vec2(-along.y, along.x)) : vec2(1.0, 0.0);
    here.xy += across * side * uWidth / uWindow;
    gl_Position = here;
}`;

export const PointVertex = `${Head}${Places}
uniform float uWidth;
in uint node;
in uint element;
void main() {
    gl_Position = show(placeOf(node), node, element, uFirst + uint(gl_VertexID));
    gl_PointSize = uWidth;
}`;

const Cut = `
uniform vec4 uCut;
uniform bool uIsCut;
in vec3 vPlace;
in vec3 vView;
in vec2 vValue;
flat in uint vElement;
flat in uint vFigure;
void cut() {
    if (uIsCut && dot(vPlace, uCut.xyz) > uCut.w) {
        discard;
    }
}
`;

/** Results are mapped to colours here, so that only colours of the legend occur. */
export const ColourFragment = `${Head}${Cut}
uniform sampler2D uTable;
uniform vec2 uRange;
uniform bool uHasResult;
uniform vec3 uPlain;
uniform bool uIsLit;
uniform uint uPicked;
uniform float uOpacity;
out vec4 colour;
void main() {
    cut();
    vec3 base = uPlain;
    if (uHasResult) {
        float place = uRange.y > uRange.x ? (vValue.x - uRange.x) / (uRange.y - uRange.x) : 0.5;
        base = vValue.y > 0.001 ? vec3(0.604) : texture(uTable, vec2(clamp(place, 0.0, 1.0), 0.5)).rgb;
    }
    if (vElement == uPicked) {
        base = mix(base, vec3(1.0, 0.25, 0.85), 0.65);
    }
    if (uIsLit) {
        vec3 normal = normalize(cross(dFdx(vView), dFdy(vView)));
        base *= mix(uHasResult ? 0.8 : 0.55, 1.0, abs(normal.z));
    }
    colour = vec4(base, uOpacity);
}`;

/** The number of a figure, from 1, as a colour. */
export const PickFragment = `${Head}${Cut}
out vec4 colour;
void main() {
    cut();
    uint number = vFigure + 1u;
    colour = vec4(uvec4(number, number >> 8, number >> 16, number >> 24) & 255u) / 255.0;
}`;
