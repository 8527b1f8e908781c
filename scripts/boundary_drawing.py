"""The manual's drawing of boundaries and ideal speed: one drive through a signal, reckoned here, as an SVG picture."""

WIDTH, HEIGHT = 720, 446
LEFT, RIGHT = 60, 20  # margins of the plots
SPEED = 40 * 5280 / 3600  # feet a second, of a free drive
BRAKES, GAINS = 8.0, 5.0  # feet a second squared
STANDS_AT, STANDS_FOR = -60.0, 20.0  # feet from the stop line; seconds
START, END = -500.0, 400.0  # the boundaries
FROM, TO = -700.0, 600.0
SPEED_PLOT, TIME_PLOT = (30, 170), (240, 400)  # their upper and lower edges
LONGEST = 50.0  # seconds
INK, GREY, BLUE, RED, GREEN = "#222222", "#8a8a8a", "#1f5fbf", "#c0392b", "#2e7d32"


def drive():
    """(feet from the stop line, feet a second, seconds since the start boundary), a point every tenth of a second."""
    step, place, speed, seconds, stood = 0.1, FROM, SPEED, (FROM - START) / SPEED, 0.0
    while place < TO:
        yield place, speed, seconds
        if stood == 0 and STANDS_AT - place <= speed ** 2 / (2 * BRAKES):
            speed = max(0.0, speed - BRAKES * step)
        elif stood > 0:
            speed = min(SPEED, speed + GAINS * step)
        while speed == 0 and stood < STANDS_FOR:
            stood += step
            seconds += step
            yield place, 0.0, seconds
        place += speed * step
        seconds += step


def across(feet):
    return LEFT + (feet - FROM) / (TO - FROM) * (WIDTH - LEFT - RIGHT)


def height(plot, share):
    return plot[1] - share * (plot[1] - plot[0])


def line(x1, y1, x2, y2, colour=GREY, width=1.0, dashes=""):
    dashes = f' stroke-dasharray="{dashes}"' if dashes else ""
    return (f'<line x1="{x1:.1f}" y1="{y1:.1f}" x2="{x2:.1f}" y2="{y2:.1f}" stroke="{colour}" '
            f'stroke-width="{width}"{dashes}/>')


def curve(points, colour, dashes=""):
    dashes = f' stroke-dasharray="{dashes}"' if dashes else ""
    places = " ".join(f"{x:.1f},{y:.1f}" for x, y in points)
    return f'<polyline points="{places}" fill="none" stroke="{colour}" stroke-width="2"{dashes}/>'


def text(x, y, words, colour=INK, anchor="start"):
    return f'<text x="{x:.1f}" y="{y:.1f}" fill="{colour}" text-anchor="{anchor}">{words}</text>'


def frames():
    for plot, name in ((SPEED_PLOT, "Speed, mph"), (TIME_PLOT, "Time, s")):
        yield line(LEFT, plot[0], LEFT, plot[1])
        yield line(LEFT, plot[1], WIDTH - RIGHT, plot[1])
        yield text(8, plot[0] - 12, name)
    for mph in (0, 20, 40):
        yield text(LEFT - 6, height(SPEED_PLOT, mph / 50) + 4, mph, anchor="end")
    for seconds in (0, 15, 30, 45):
        yield text(LEFT - 6, height(TIME_PLOT, seconds / LONGEST) + 4, seconds, anchor="end")
    for feet in (-600, -400, -200, 0, 200, 400):
        yield text(across(feet), TIME_PLOT[1] + 18, feet, anchor="middle")
    yield text(WIDTH - RIGHT, TIME_PLOT[1] + 38, "feet from the stop line", anchor="end")


def places():
    for feet, name in ((START, "start boundary"), (END, "end boundary")):
        yield line(across(feet), SPEED_PLOT[0] - 8, across(feet), TIME_PLOT[1], BLUE, 2)
        yield text(across(feet), SPEED_PLOT[0] - 14, name, BLUE, "middle")
    yield line(across(0), SPEED_PLOT[0] - 8, across(0), TIME_PLOT[1], GREY, 1, "2 3")
    yield text(across(0), SPEED_PLOT[0] - 14, "stop line", GREY, "middle")


def speeds(points):
    yield curve([(across(feet), height(SPEED_PLOT, speed * 3600 / 5280 / 50)) for feet, speed, _ in points], INK)
    ideal = height(SPEED_PLOT, 40 / 50)
    yield line(across(START), ideal, across(END), ideal, GREEN, 2, "7 4")
    yield text(across(-240), ideal - 6, "ideal speed", GREEN)
    yield text(across(STANDS_AT) - 12, height(SPEED_PLOT, 0) - 8, "stands in the queue", INK, "end")


def times(points):
    within = [point for point in points if START <= point[0] <= END]
    yield curve([(across(feet), height(TIME_PLOT, seconds / LONGEST)) for feet, _, seconds in within], INK)
    ideal, taken = (END - START) / SPEED, within[-1][2]
    ends = [(across(START), height(TIME_PLOT, 0)), (across(END), height(TIME_PLOT, ideal / LONGEST))]
    yield curve(ends, GREEN, "7 4")
    x, y1, y2 = across(END) + 12, height(TIME_PLOT, ideal / LONGEST), height(TIME_PLOT, taken / LONGEST)
    yield line(x, y1, x, y2, RED, 3)
    yield text(x + 8, (y1 + y2) / 2 - 4, "control delay", RED)
    yield text(x + 8, (y1 + y2) / 2 + 14, f"{taken:.0f} &#8722; {ideal:.0f} = {taken - ideal:.0f} s", RED)
    yield text(across(120), y2 - 2, "the run")
    yield text(across(110), y1 - 8, "at the ideal speed", GREEN)


def drawing():
    points = list(drive())
    parts = [*frames(), *places(), *speeds(points), *times(points)]
    head = (f'<svg xmlns="http://www.w3.org/2000/svg" width="{WIDTH}" height="{HEIGHT}" viewBox="0 0 {WIDTH} {HEIGHT}" '
            'font-family="DejaVu Sans, sans-serif" font-size="13">')
    return "\n".join([head, f'<rect width="{WIDTH}" height="{HEIGHT}" fill="#ffffff"/>', *parts, "</svg>", ""])
