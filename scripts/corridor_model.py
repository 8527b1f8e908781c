"""The model of motion behind make_corridor.py: a street with signals, routes along it and beside it, and a car.

It knows nothing of the program. Units: feet, seconds (UTC since 1970), feet per second. Only uniform draws and basic
arithmetic decide what the car does, so a seed gives the same day on every machine.
"""

from bisect import bisect_right
from dataclasses import dataclass, field
from math import atan2, cos, degrees, hypot, pi, radians, sin

MPH = 5280 / 3600
STEP = 0.1
FEET_A_DEGREE = 6371008.8 / 0.3048 * pi / 180  # of latitude
LANE = 10.0          # from the middle of the street to that of the lane
STOP_LINE = 30.0     # before the node, whichever way one drives
AMBER = 4.0
SIGHT = 700.0        # from where a driver sees a signal and its queue
HARDEST_BRAKING = 9.0
START_WAVE = 17.0    # speed at which a queue starts to move, from its front to its back
TURNING_SPEED = 12 * MPH
SIDE_STREET_SPEED = 25 * MPH


@dataclass
class Timing:
    """Green begins where (UTC seconds since 1970 - offset) is a multiple of the cycle; then amber, then red."""
    cycle: int
    offset: int
    green: int

    def phase(self, t):
        return (t - self.offset) % self.cycle

    def colour(self, t):
        phase = self.phase(t)
        return "green" if phase < self.green else "amber" if phase < self.green + AMBER else "red"


class Street:
    """Straight legs from corner to corner; `s` counts feet along the middle of the street from the first node."""

    def __init__(self, origin, nodes, corners, headings):
        """`corners` are where the legs begin, and the street's end; `headings` of the legs, degrees from north."""
        self.origin, self.nodes, self.corners = origin, nodes, corners
        self.ways = [(sin(radians(heading)), cos(radians(heading))) for heading in headings]
        self.places = [(0.0, 0.0)]
        for way, begin, end in zip(self.ways, corners, corners[1:]):
            east, north = self.places[-1]
            self.places.append((east + way[0] * (end - begin), north + way[1] * (end - begin)))
        shift = self.place(0.0, 0.0)
        self.places = [(east - shift[0], north - shift[1]) for east, north in self.places]

    def place(self, s, right):
        """Feet east and north of the first node of what lies `right` feet beside the street."""
        leg = min(max(bisect_right(self.corners, s) - 1, 0), len(self.ways) - 1)
        way, along = self.ways[leg], s - self.corners[leg]
        normal = (way[1], -way[0])
        if abs(along) < 1e-9 and leg > 0:  # a corner: on the line that halves its angle
            before = self.ways[leg - 1]
            share = 1 + way[0] * before[0] + way[1] * before[1]
            normal = ((way[1] + before[1]) / share, -(way[0] + before[0]) / share)
        east, north = self.places[leg]
        return east + way[0] * along + right * normal[0], north + way[1] * along + right * normal[1]

    def degrees(self, east, north):
        latitude = self.origin[0] + north / FEET_A_DEGREE
        middle = radians((latitude + self.origin[0]) / 2)
        return latitude, self.origin[1] + east / (FEET_A_DEGREE * cos(middle))


@dataclass
class Pass:
    """A way along the street: the nodes on it, in the order driven, with the feet of the route at each."""
    forward: bool
    nodes: list = field(default_factory=list)  # (index, feet of the route)


class Route:
    """Where the car goes: a line with the stop lines, pauses and slow stretches on it. `at` is where it ends so far."""

    def __init__(self, street):
        self.street = street
        self.points, self.feet = [], []
        self.lines, self.pauses, self.slow = [], [], []  # (feet, node), (feet, seconds), (begin, end, speed)
        self.passes, self.others = [], []                # others: what is no pass: (begin, end, what)

    @property
    def length(self):
        return self.feet[-1] if self.feet else 0.0

    def go(self, place):
        if self.points:
            way = hypot(place[0] - self.points[-1][0], place[1] - self.points[-1][1])
            if way < 1e-6:
                return
            self.feet.append(self.feet[-1] + way)
        else:
            self.feet.append(0.0)
        self.points.append(place)
        if len(self.points) > 2 and abs(self.turn(-2)) > 25:
            corner = self.feet[-2]
            self.slow.append((corner - 12, corner + 12, TURNING_SPEED))

    def turn(self, corner):
        """Degrees by which the route turns at one of its points."""
        (a, b), (c, d), (e, f) = self.points[corner - 1:corner + 1] + [self.points[corner + 1]]
        return (degrees(atan2(e - c, f - d) - atan2(c - a, d - b)) + 180) % 360 - 180

    def along(self, begin, end, right=LANE, on_street=True):
        """Along the street from `begin` to `end`, `right` feet to the right of its middle as one drives."""
        sign = 1 if end > begin else -1
        nodes = self.street.nodes if on_street else []
        stops = sorted({begin, end, *self.street.corners, *nodes}, reverse=sign < 0)
        drive = Pass(sign > 0)
        for s in (s for s in stops if min(begin, end) <= s <= max(begin, end)):
            self.go(self.street.place(s, right * sign))
            if s in nodes:
                drive.nodes.append((nodes.index(s), self.length))
                self.lines.append((self.length - STOP_LINE, nodes.index(s)))
        if drive.nodes:
            self.passes.append(drive)

    def beside(self, what, places, sign):
        """Off the street by way of places (s, feet to the right as one drove); no pass."""
        begin = self.length
        for s, right in places:
            self.go(self.street.place(s, right * sign))
        self.slow.append((begin + 1, self.length - 1, SIDE_STREET_SPEED))
        self.others.append((begin, self.length, what))

    def pause(self, seconds):
        self.pauses.append((self.length, seconds))

    def place(self, feet):
        leg = min(max(bisect_right(self.feet, feet) - 1, 0), len(self.feet) - 2)
        share = (feet - self.feet[leg]) / (self.feet[leg + 1] - self.feet[leg])
        (a, b), (c, d) = self.points[leg], self.points[leg + 1]
        return a + (c - a) * share, b + (d - b) * share


class Car:
    """Drives a route. `trace` has feet of the route and speed at the start and after each step."""

    def __init__(self, route, timings, cruise, start, rng):
        self.route, self.timings, self.cruise, self.start, self.rng = route, timings, cruise, start, rng
        self.x, self.v, self.wander = 0.0, 0.0, 0.0
        self.trace = [(0.0, 0.0)]
        self.lines, self.pauses, self.slow = sorted(route.lines), list(route.pauses), sorted(route.slow)
        self.held = None       # (feet of the route to stop at, feet behind the stop line)
        self.committed = False  # too close to stop when the amber came
        self.passed_line = []  # (node, time)
        self.next_drive()

    @property
    def t(self):
        return self.start + (len(self.trace) - 1) * STEP

    def next_drive(self):
        """A driver is never the same twice."""
        self.wished = self.cruise * self.rng.uniform(0.95, 1.05)
        self.acceleration = self.rng.uniform(4.5, 6.0)
        self.braking = self.rng.uniform(4.0, 7.0)

    def watch_signal(self):
        while self.lines and self.x >= self.lines[0][0]:
            node = self.lines.pop(0)[1]
            self.passed_line.append((node, self.t))
            assert self.timings[node].colour(self.t - STEP) != "red", "drove through a red light"
            self.held, self.committed = None, False
            self.braking = self.rng.uniform(4.0, 7.0)
        if not self.lines or self.lines[0][0] - self.x > SIGHT:
            return
        line, timing = self.lines[0][0], self.timings[self.lines[0][1]]
        if timing.colour(self.t) == "green":
            if self.held and timing.phase(self.t) >= self.startup + self.held[1] / START_WAVE:
                self.held = None
            return
        if self.held or self.committed:
            return
        furthest = line - self.x - self.v * self.v / (2 * HARDEST_BRAKING)
        if furthest < 0:
            self.committed = True
            return
        behind = min(self.rng.uniform(0.0, 250.0), furthest)
        self.held, self.startup = (line - behind, behind), self.rng.uniform(1.0, 2.5)

    def stop_ahead(self):
        """Feet to the next place at which the car has to stand."""
        stops = [place for place, _ in [*filter(None, [self.held]), *self.pauses[:1]]]
        return min([self.route.length, *stops]) - self.x

    def limit(self):
        """The wished speed here, and the braking that a slow stretch ahead asks for."""
        self.wander += self.rng.uniform(-0.35, 0.35) - self.wander * STEP / 10
        wished, needed = self.wished + self.wander, 0.0
        while self.slow and self.slow[0][1] < self.x:
            self.slow.pop(0)
        for begin, end, speed in self.slow[:20]:
            if begin <= self.x < end:
                wished = min(wished, speed)
            elif begin > self.x and self.v > speed:
                needed = max(needed, (self.v * self.v - speed * speed) / (2 * (begin - self.x)))
        return wished, needed

    def step(self):
        self.watch_signal()
        wished, needed = self.limit()
        gap = self.stop_ahead()
        to_stop = self.v * self.v / (2 * max(gap, 0.01))
        if gap < 0.5 or (gap < 3 and self.v < 1):
            self.v = 0.0
        elif to_stop >= self.braking or needed >= self.braking:
            self.v = max(self.v - max(to_stop, needed) * STEP, 0.0 if gap < 3 else 0.5)
        else:
            share = self.v / wished
            self.v += max(self.acceleration * (1 - share * share * share), -4.0) * STEP
        self.x += self.v * STEP
        self.trace.append((self.x, self.v))

    def drive(self):
        while self.x < self.route.length - 0.5:
            self.step()
            if self.pauses and self.v == 0.0 and self.pauses[0][0] - self.x < 3:
                self.trace += [self.trace[-1]] * round(self.pauses.pop(0)[1] / STEP)
                self.next_drive()
        return self.trace


class Crossings:
    """When the car was where; the route is never driven backwards."""

    def __init__(self, car):
        self.start, self.feet = car.start, [x for x, _ in car.trace]
        self.speeds = [v for _, v in car.trace]

    def time(self, feet):
        """When it passed that place of the route."""
        after = bisect_right(self.feet, feet)
        if after == len(self.feet):
            return self.start + (after - 1) * STEP
        a, b = self.feet[after - 1], self.feet[after]
        return self.start + (after - 1 + (feet - a) / (b - a)) * STEP

    def step(self, t):
        return min(max(round((t - self.start) / STEP), 0), len(self.feet) - 1)

    def stops(self, begin, end):
        """Seconds below 5 mph, and each stop (below 5 mph until 10 mph) that begins in this time as (begin, end)."""
        stopped, stops, standing = 0, [], None
        first, last = self.step(begin), self.step(end)
        for i in range(first, len(self.speeds)):
            if i >= last and standing is None:
                break
            stopped += self.speeds[i] < 5 * MPH and i < last
            if standing is None and self.speeds[i] < 5 * MPH:
                standing = i
            elif standing is not None and self.speeds[i] >= 10 * MPH:
                stops.append((self.start + standing * STEP, self.start + i * STEP))
                standing = None
        return stopped * STEP, stops
