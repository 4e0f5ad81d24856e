#include "app/screens/ArcChoice.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <numbers>
#include <set>
#include <tuple>

namespace volvelle {

namespace {

// About what an arc costs: microseconds, and more for each pixel of its length.
constexpr double costOfArc = 7.0;
constexpr double costOfPixel = 0.65;
constexpr double mostCost = 1.5e6; // of a picture

double costOf(const CircleArc& arc, double pixels)
{
    return arc.hasPlace() ? costOfArc + arc.radius * arc.sweep * pixels * costOfPixel : 0.0;
}

// What makes two arcs look alike, in quarters of a pixel.
class LookOfArc {
public:
    LookOfArc(const CircleArc& arc, double pixels)
        : look(arc.radius, quarters(arc.startAngle, arc, pixels), quarters(arc.sweep, arc, pixels), arc.width,
               arc.color.red, arc.color.green, arc.color.blue, arc.color.alpha)
    {
    }

    bool operator<(const LookOfArc& other) const { return look < other.look; }

private:
    static double quarters(double angle, const CircleArc& arc, double pixels)
    {
        return std::round(angle * arc.radius * pixels * 4.0);
    }

    std::tuple<double, double, double, double, double, double, double, double> look;
};

double chooseByLook(const CircleDrawing& drawing, double pixels, std::vector<bool>& chosen)
{
    std::set<LookOfArc> seen;
    double cost = 0.0;
    for (std::size_t i = drawing.arcs.size(); i-- > 0;) {
        const CircleArc& arc = drawing.arcs[i];
        chosen[i] = arc.hasPlace() && seen.emplace(arc, pixels).second;
        cost += chosen[i] ? costOf(arc, pixels) : 0.0;
    }
    return cost;
}

// By the golden ratio, which goes with no rhythm; the topmost of a ring comes first.
void chooseOfRings(const CircleDrawing& drawing, double share, std::vector<bool>& chosen)
{
    std::map<double, int> counts;
    for (std::size_t i = drawing.arcs.size(); i-- > 0;) {
        if (chosen[i]) {
            const double place = counts[drawing.arcs[i].radius]++ * std::numbers::phi;
            chosen[i] = place - std::floor(place) < share;
        }
    }
}

} // namespace

std::vector<bool> chooseArcs(const CircleDrawing& drawing, double pixels)
{
    std::vector<bool> chosen(drawing.arcs.size(), true);
    double cost = 0.0;
    for (const CircleArc& arc : drawing.arcs) {
        cost += costOf(arc, pixels);
    }
    if (cost <= mostCost) {
        return chosen;
    }
    cost = chooseByLook(drawing, pixels, chosen);
    if (cost > mostCost) {
        chooseOfRings(drawing, mostCost / cost, chosen);
    }
    return chosen;
}

} // namespace volvelle
