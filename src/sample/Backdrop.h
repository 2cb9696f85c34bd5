#pragma once

#include <vector>

#include "sample/Band.h"

namespace trimora::sample {

/// What lies far behind the subject, out of focus: dusk in a garden, leaves, and strings of lights.
class Backdrop final : public SceneElement {
 public:
    Backdrop();
    void paint(Band& band) const override;

 private:
    struct Leaf {
        foundation::Point centre;
        double length;
        double breadth;
        double cosine;  // of the direction in which it points
        double sine;
        Colour colour;
        float alpha;
    };
    struct Light {
        foundation::Point centre;
        double radius;
        Colour colour;
    };

    void addLeaves();
    void addString(double startY, double sag, double endY, int count);
    void addScatteredLights();
    static void paintLeaf(Band& band, const Leaf& leaf);
    static void paintLight(Band& band, const Light& light);

    std::vector<Leaf> leaves_;
    std::vector<Light> lights_;
};

}  // namespace trimora::sample
