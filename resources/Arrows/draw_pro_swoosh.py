#!/usr/bin/env python3
"""Draws arrow_pro_swoosh.png, the arrow that every new project begins with.

    python3 draw_pro_swoosh.py [arrow_pro_swoosh.png]

Needs nothing but Python's standard library and takes about a minute. The picture is committed: run this only to
change it. The arrow is modelled rather than painted: its outline becomes a relief whose edges are rounded, and every
point of the relief is lit by two lamps, a sky and the light that the ground throws back.
"""
import math
import struct
import sys
import zlib

# Six pixels a point: sharp on every screen, and of the size that the starter project gives it (152.9 x 41 points).
WIDTH, HEIGHT, DPI = 918, 246, 432
OVERSAMPLING = 3


# ---------------------------------------------------------------- outline

def bezier(a, b, c, d, t):
    s = 1 - t
    return tuple(s * s * s * p + 3 * s * s * t * q + 3 * s * t * t * r + t * t * t * u for p, q, r, u in zip(a, b, c, d))


def bezier_direction(a, b, c, d, t):
    s = 1 - t
    x, y = (3 * s * s * (q - p) + 6 * s * t * (r - q) + 3 * t * t * (u - r) for p, q, r, u in zip(a, b, c, d))
    length = math.hypot(x, y)
    return x / length, y / length


def rounded(points, corners):
    """The polygon with the corners of these indexes cut by a curve that begins so many pixels before each."""
    result = []
    for i, point in enumerate(points):
        cut = corners.get(i)
        if not cut:
            result.append(point)
            continue
        sides = []
        for other in (points[i - 1], points[(i + 1) % len(points)]):
            length = math.dist(point, other)
            sides.append(tuple(p + (o - p) * min(0.5, cut / length) for p, o in zip(point, other)))
        for step in range(13):
            t = step / 12
            result.append(tuple((1 - t) ** 2 * p + 2 * t * (1 - t) * q + t * t * r
                                for p, q, r in zip(sides[0], point, sides[1])))
    return result


# The sweep's axis: from a hair-thin tail over the crest into the head, which dips towards its goal.
AXIS = ((14, 203), (206, 85), (452, 57), (684, 111))
HEAD_LENGTH, HEAD_HALF, HEAD_SWEEP = 212, 92, 32
NECK_HALF = 45


def half_width(t):
    """Half the sweep's width: a slow start, then swelling like something that comes nearer."""
    return 1.2 + (NECK_HALF - 1.2) * (0.50 * t + 0.50 * t ** 2.2)


def outline():
    steps = 160
    upper, lower = [], []
    for i in range(steps + 1):
        t = i / steps
        (x, y), (dx, dy) = bezier(*AXIS, t), bezier_direction(*AXIS, t)
        w = half_width(t)
        upper.append((x + dy * w, y - dx * w))
        lower.append((x - dy * w, y + dx * w))
    (x, y), (dx, dy) = bezier(*AXIS, 1), bezier_direction(*AXIS, 1)

    def at(along, across):
        return x + dx * along - dy * across, y + dy * along + dx * across

    head = [at(-HEAD_SWEEP, -HEAD_HALF), at(HEAD_LENGTH, 0), at(-HEAD_SWEEP, HEAD_HALF)]
    # The sweep runs into the slanting back of the head.
    join = at(-HEAD_SWEEP * NECK_HALF / HEAD_HALF, -NECK_HALF), at(-HEAD_SWEEP * NECK_HALF / HEAD_HALF, NECK_HALF)
    cut = steps - 6
    points = upper[:cut] + [join[0]] + head + [join[1]] + lower[:cut][::-1]
    return rounded(points, {cut: 5, cut + 1: 16, cut + 2: 20, cut + 3: 16, cut + 4: 5})


# ---------------------------------------------------------------- fields: lists of rows of floats

def fill(polygon, width, height, scale):
    """1 inside the polygon, 0 outside; the winding rule does not matter, the outline does not cross itself."""
    edges = [((x0 * scale, y0 * scale), (x1 * scale, y1 * scale))
             for (x0, y0), (x1, y1) in zip(polygon, polygon[1:] + polygon[:1]) if y0 != y1]
    rows = []
    for row in range(height):
        y = row + 0.5
        crossings = sorted(x0 + (y - y0) * (x1 - x0) / (y1 - y0) for (x0, y0), (x1, y1) in edges
                           if min(y0, y1) <= y < max(y0, y1))
        line = [0.0] * width
        for begin, end in zip(crossings[::2], crossings[1::2]):
            for i in range(max(0, math.ceil(begin - 0.5)), min(width, math.ceil(end - 0.5))):
                line[i] = 1.0
        rows.append(line)
    return rows


def transposed(field):
    return [list(column) for column in zip(*field)]


def squared_distances(line):
    """For each place the least (distance squared + value) over all places: the lower envelope of parabolas."""
    n = len(line)
    sites, borders = [0], [-math.inf, math.inf]
    for q in range(1, n):
        while True:
            p = sites[-1]
            s = ((line[q] + q * q) - (line[p] + p * p)) / (2 * q - 2 * p)
            if s > borders[-2]:
                break
            sites.pop()
            borders.pop()
        borders[-1] = s
        sites.append(q)
        borders.append(math.inf)
    result, k = [0.0] * n, 0
    for q in range(n):
        while borders[k + 1] < q:
            k += 1
        result[q] = (q - sites[k]) ** 2 + line[sites[k]]
    return result


def depths(mask):
    """How far each point of the shape is from its edge."""
    far = 1e9
    columns = [squared_distances([far if v else 0.0 for v in column]) for column in transposed(mask)]
    return [[math.sqrt(v) for v in squared_distances(row)] for row in transposed(columns)]


def averaged(line, radius):
    n, total, result = len(line), sum(line[:radius]), []
    for i in range(n):
        total += (line[i + radius] if i + radius < n else 0.0) - (line[i - radius - 1] if i > radius else 0.0)
        result.append(total / (2 * radius + 1))
    return result


def blurred(field, sigma):
    radius = max(1, round(sigma))
    for _ in range(2):
        rows = []
        for row in field:
            for _ in range(3):
                row = averaged(row, radius)
            rows.append(row)
        field = transposed(rows)
    return field


# ---------------------------------------------------------------- light

def normalized(*v):
    length = math.sqrt(sum(c * c for c in v))
    return tuple(c / length for c in v)


def mixed(a, b, t):
    t = min(1.0, max(0.0, t))
    return tuple(p + (q - p) * t for p, q in zip(a, b))


def smooth(low, high, x):
    t = min(1.0, max(0.0, (x - low) / (high - low)))
    return t * t * (3 - 2 * t)


# x to the right, y down, z towards the viewer. Colours are linear light.
KEY = normalized(-0.30, -0.72, 0.62)
KEY_HALFWAY = normalized(KEY[0], KEY[1], KEY[2] + 1)
RIM = normalized(0.35, 0.80, 0.35)
RIM_HALFWAY = normalized(RIM[0], RIM[1], RIM[2] + 1)
TAIL, BODY, HEAD = (0.26, 0.60, 1.00), (0.020, 0.250, 0.92), (0.002, 0.115, 0.68)
SKY, GROUND = (0.50, 0.85, 1.0), (0.004, 0.035, 0.20)


def lit(normal, x, depth):
    """Linear colour of a point of the arrow. x in picture pixels, depth from the edge in the same."""
    nx, ny, nz = normal
    along = x / WIDTH
    base = mixed(TAIL, BODY, smooth(0.02, 0.62, along))
    base = mixed(base, HEAD, smooth(0.60, 1.02, along))

    diffuse = max(0.0, nx * KEY[0] + ny * KEY[1] + nz * KEY[2])
    sky = 0.5 - 0.5 * ny
    color = [b * (0.16 + 1.22 * diffuse) for b in base]
    # The glossy coat mirrors the sky, the more the flatter it is looked at.
    fresnel = 0.04 + 0.55 * (1 - nz) ** 2.2
    mirrored = mixed(GROUND, SKY, smooth(0.35, 0.78, sky))
    color = [c * (1 - fresnel) + m * fresnel for c, m in zip(color, mirrored)]
    spot = max(0.0, nx * KEY_HALFWAY[0] + ny * KEY_HALFWAY[1] + nz * KEY_HALFWAY[2])
    gleam, sheen = 0.85 * spot ** 60, 0.20 * spot ** 12
    bounce = max(0.0, nx * RIM_HALFWAY[0] + ny * RIM_HALFWAY[1] + nz * RIM_HALFWAY[2]) ** 10
    color = [c + gleam + sheen * s + bounce * b
             for c, s, b in zip(color, (0.10, 0.62, 1.0), (0.02, 0.18, 0.42))]
    # A dark hairline keeps the edge crisp on white.
    edge = 1 - 0.42 * (1 - smooth(0.0, 4.0, depth))
    return [c * edge for c in color]


def encoded(linear):
    linear = min(1.0, max(0.0, linear))
    return 12.92 * linear if linear <= 0.0031308 else 1.055 * linear ** (1 / 2.4) - 0.055


def draw(oversampling):
    width, height, k = WIDTH * oversampling, HEIGHT * oversampling, oversampling
    polygon = outline()
    mask = fill(polygon, width, height, k)
    depth = depths(mask)

    # The relief: a quarter of a circle at the edges, softened so that no ridge is sharp.
    radius = 44.0 * k
    relief = [[radius * math.sqrt(max(0.0, 1 - (1 - min(1.0, d / radius)) ** 2)) if d else 0.0 for d in row]
              for row in depth]
    relief = blurred(relief, 4.0 * k)

    soft = blurred(mask, 7.0 * k)
    wide = blurred(mask, 15.0 * k)

    pixels = []
    for row in range(HEIGHT):
        line = []
        for column in range(WIDTH):
            r = g = b = a = 0.0
            for j in range(k):
                y = row * k + j
                for i in range(k):
                    x = column * k + i
                    px = (x + 0.5) / k
                    if mask[y][x]:
                        up, down = relief[max(0, y - 1)][x], relief[min(height - 1, y + 1)][x]
                        left, right = relief[y][max(0, x - 1)], relief[y][min(width - 1, x + 1)]
                        normal = normalized((left - right) / 2, (up - down) / 2, 0.9)
                        alpha = 0.25 + 0.75 * smooth(0.0, 0.16, px / WIDTH)
                        color = lit(normal, px, depth[y][x] / k)
                    else:
                        color, alpha = (0.0, 0.0, 0.0), 0.0
                    # The shadow falls below; it fades with the tail, which is farther from the ground.
                    near = soft[y - 11 * k][min(width - 1, x + k)] if y >= 11 * k else 0.0
                    broad = wide[y - 20 * k][min(width - 1, x + 2 * k)] if y >= 20 * k else 0.0
                    shade = (0.30 * near + 0.20 * broad) * smooth(-0.05, 0.45, px / WIDTH)
                    total = alpha + shade * (1 - alpha)
                    r += color[0] * alpha
                    g += color[1] * alpha
                    b += (color[2] * alpha + 0.012 * shade * (1 - alpha))
                    a += total
            n = k * k
            if a > 0:
                line.append((encoded(r / a), encoded(g / a), encoded(b / a), a / n))
            else:
                line.append((0.0, 0.0, 0.0, 0.0))
        pixels.append(line)
    return pixels


def png(pixels):
    def chunk(kind, data):
        return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))

    rows = b"".join(b"\0" + bytes(round(255 * channel) for pixel in row for channel in pixel) for row in pixels)
    per_metre = round(DPI / 0.0254)
    return (b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", struct.pack(">IIBBBBB", WIDTH, HEIGHT, 8, 6, 0, 0, 0))
            + chunk(b"pHYs", struct.pack(">IIB", per_metre, per_metre, 1))
            + chunk(b"IDAT", zlib.compress(rows, 9)) + chunk(b"IEND", b""))


def main():
    target = sys.argv[1] if len(sys.argv) > 1 else "arrow_pro_swoosh.png"
    oversampling = int(sys.argv[2]) if len(sys.argv) > 2 else OVERSAMPLING
    with open(target, "wb") as file:
        file.write(png(draw(oversampling)))


main()
