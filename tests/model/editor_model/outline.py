# SPDX-License-Identifier: MIT
"""A chain of points (pixel points and their normalised twins) and how it is edited.

The live outline and the outline of a keyframe are both one of these. `rect` is always the rectangle that the twins are
fractions of. Indices wrap around.
"""
from __future__ import absolute_import

from editor_model.records import ANCHOR, CONTROL, Point, twin_of
from editor_model.single import normalise


def straight_controls(a, b):
    """The two control points of a straight segment: one quarter and three quarters of the way."""
    return [Point(CONTROL, a.x + int(0.25 * (b.x - a.x)), a.y + int(0.25 * (b.y - a.y))),
            Point(CONTROL, a.x + int(0.75 * (b.x - a.x)), a.y + int(0.75 * (b.y - a.y)))]


def smooth_run(before_a, a, p, b, after_b):
    """What replaces the control points of a curved segment a to b when p is inserted: a smooth curve through p."""
    return [Point(CONTROL, a.x + int(0.15 * (p.x - before_a.x)), a.y + int(0.15 * (p.y - before_a.y))),
            Point(CONTROL, p.x - int(0.15 * (b.x - a.x)), p.y - int(0.15 * (b.y - a.y))),
            Point(p.type, p.x, p.y, 1, 1, 0),
            Point(CONTROL, p.x + int(0.15 * (b.x - a.x)), p.y + int(0.15 * (b.y - a.y))),
            Point(CONTROL, b.x + int(0.15 * (p.x - after_b.x)), b.y + int(0.15 * (p.y - after_b.y)))]


class Outline(object):

    def __init__(self):
        self.points = []
        self.twins = []

    def __len__(self):
        return len(self.points)

    def copy(self):
        other = Outline()
        other.points = [point.copy() for point in self.points]
        other.twins = [twin.copy() for twin in self.twins]
        return other

    def clear(self):
        self.points = []
        self.twins = []

    # --- looking around ---

    def at(self, index):
        return self.points[index % len(self.points)]

    def is_anchor(self, index):
        return self.at(index).is_anchor()

    def anchors(self):
        return [index for index, point in enumerate(self.points) if point.is_anchor()]

    def is_closed(self):
        return len(self.points) > 0 and not self.points[-1].is_anchor()

    def anchor_before(self, index):
        index -= 1
        while not self.is_anchor(index):
            index -= 1
        return index % len(self.points)

    def anchor_after(self, index):
        index += 1
        while not self.is_anchor(index):
            index += 1
        return index % len(self.points)

    def hit_test(self, x, y):
        """The first anchor at a pointer position, or -1."""
        for index in self.anchors():
            if self.points[index].within_tolerance(x, y):
                return index
        return -1

    # --- small changes that keep both vectors together ---

    def recompute_twin(self, index, rect):
        """A twin follows its pixel point in place only: its flags are set where the point's are."""
        point, twin = self.at(index), self.twins[index % len(self.twins)]
        twin.x = normalise(point.x, rect.width, rect.left)
        twin.y = normalise(point.y, rect.height, rect.top)

    def set_curve(self, index, name, value):
        """Sets `curve_in` or `curve_out` of an anchor in both vectors."""
        setattr(self.at(index), name, value)
        setattr(self.twins[index % len(self.twins)], name, value)

    def insert_run(self, at, run, rect):
        self.points[at:at] = run
        self.twins[at:at] = [twin_of(point, rect) for point in run]

    def remove(self, first, last):
        del self.points[first:last]
        del self.twins[first:last]

    def offset(self, index, dx, dy, rect):
        point = self.at(index)
        point.x += dx
        point.y += dy
        self.recompute_twin(index, rect)

    def re_place(self, index, place, rect):
        """Moves a control point of a straight segment where it belongs; whether its handle is shown stays."""
        point = self.at(index)
        point.x, point.y = place.x, place.y
        self.recompute_twin(index, rect)

    # --- drawing ---

    def append_anchor(self, x, y, rect):
        anchor = Point(ANCHOR, x, y)
        if not self.points:
            run = [anchor]
        elif self.is_closed():
            last = self.anchors()[-1]
            self.remove(len(self) - 2, len(self))
            self.set_curve(last, "curve_out", 0)
            self.set_curve(0, "curve_in", 0)
            run = straight_controls(self.points[last], anchor) + [anchor] + straight_controls(anchor, self.points[0])
        else:
            run = straight_controls(self.points[-1], anchor) + [anchor]
        self.insert_run(len(self), run, rect)

    def close(self, rect):
        """Adds the straight segment from the last anchor back to the first one."""
        if self.is_closed():
            self.remove(len(self) - 2, len(self))
        self.insert_run(len(self), straight_controls(self.points[-1], self.points[0]), rect)
        self.set_curve(0, "curve_in", 0)

    # --- editing ---

    def insert(self, index, p, rect):
        """Inserts the anchor p into the segment around chain position `index`."""
        a = index - 1 if self.is_anchor(index) else index
        while not self.is_anchor(a):
            a -= 1
        a %= len(self)
        while a + 1 < len(self) and not self.points[a + 1].is_anchor():
            self.remove(a + 1, a + 2)
        b = (a + 1) % len(self)
        point_a, point_b = self.points[a], self.points[b]
        if point_a.curve_out == 0:
            inserted = Point(p.type, p.x, p.y, p.curve_in, p.curve_out, 0)
            run = straight_controls(point_a, inserted) + [inserted] + straight_controls(inserted, point_b)
        else:
            run = smooth_run(self.at(self.anchor_before(a)), point_a, p, point_b, self.at(self.anchor_after(b)))
        self.insert_run(a + 1, run, rect)

    def delete(self, selected, rect):
        """Removes the selected anchors; segments between anchors that were no neighbours before become straight."""
        old, anchors, closed = self.copy(), self.anchors(), self.is_closed()
        kept = [index for index in anchors if index not in selected]
        pairs = zip(kept, kept[1:])
        if closed and kept:
            pairs.append((kept[-1], kept[0]))
        elif kept:
            pairs.append((kept[-1], None))
        joined = [pair for pair in pairs if pair[1] is not None and not _were_neighbours(pair, anchors)]
        for a, b in joined:
            old.set_curve(a, "curve_out", 0)
            old.set_curve(b, "curve_in", 0)
        self.clear()
        for a, b in pairs:
            self.points.append(old.points[a])
            self.twins.append(old.twins[a])
            if (a, b) in joined:
                self.insert_run(len(self), straight_controls(old.points[a], old.points[b]), rect)
            elif b is not None:
                self.points += old.points[a + 1:a + 3]
                self.twins += old.twins[a + 1:a + 3]

    def move_control(self, c, dx, dy, rect):
        """Moves one handle and marks the segment that it bends."""
        self.offset(c, dx, dy, rect)
        if self.is_anchor(c - 1):
            self.set_curve(c - 1, "curve_out", 1)
            self.set_curve(c + 2, "curve_in", 1)
        else:
            self.set_curve(c + 1, "curve_in", 1)
            self.set_curve(c - 2, "curve_out", 1)

    def move_anchor(self, a, dx, dy, rect):
        """Moves an anchor; straight segments stay straight, the handles of bent ones go along.

        At the ends of an open chain there is no segment on the one side, and nothing to do there.
        """
        self.offset(a, dx, dy, rect)
        anchor = self.at(a)
        for step, flag in ((-1, anchor.curve_in), (1, anchor.curve_out)):
            if self.is_anchor(a + step):
                continue
            if flag == 1:
                self.offset(a + step, dx, dy, rect)
            else:
                near, far = straight_controls(anchor, self.at(a + 3 * step))
                self.re_place(a + step, near, rect)
                self.re_place(a + 2 * step, far, rect)


def _were_neighbours(pair, anchors):
    position = anchors.index(pair[0])
    return anchors[(position + 1) % len(anchors)] == pair[1]
