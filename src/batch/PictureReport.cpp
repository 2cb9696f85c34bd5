#include "batch/PictureReport.h"

#include <array>
#include <nlohmann/json.hpp>
#include <sstream>

namespace trimora::batch {

using codecs::PictureFacts;
using foundation::Size;
using nlohmann::ordered_json;

namespace {

constexpr std::array kTurns = {
    "upright",
    "mirrored left to right",
    "turned by 180 degrees",
    "mirrored top to bottom",
    "mirrored along the diagonal",
    "to be turned clockwise",
    "mirrored along the other diagonal",
    "to be turned counter-clockwise",
};

const char* turnOf(codecs::Orientation orientation) {
    return kTurns.at(static_cast<std::size_t>(orientation) - 1);
}

int whole(double side) {
    return static_cast<int>(side);
}

std::string text(Size size) {
    return std::to_string(whole(size.width)) + " x " + std::to_string(whole(size.height));
}

void tellFacts(std::ostream& out, const PictureFacts& facts) {
    out << "  format        " << nameOf(facts.format) << ", " << facts.bitsPerSample << " bits a sample"
        << (facts.hasAlpha ? ", with transparency" : "") << "\n  stored        " << facts.width << " x "
        << facts.height << ", " << turnOf(facts.orientation) << "\n  profile       "
        << (facts.profile.empty() ? "none" : facts.profile) << '\n';
}

void tellOpening(std::ostream& out, const Opening& opening) {
    out << "  pictures      ";
    const char* comma = "";
    for (const Size& size : opening.representations) {
        out << comma << text(size);
        comma = ", ";
    }
    out << "\n  opens as      " << text(opening.image) << "\n  mask plane    " << opening.plane.width << " x "
        << opening.plane.height << ", scale " << opening.plane.maskScale << '\n';
    if (!opening.notice.empty())
        out << "  but           " << opening.notice << '\n';
}

ordered_json pair(Size size) {
    return {whole(size.width), whole(size.height)};
}

}  // namespace

std::string paragraphOf(const PictureReport& report) {
    std::ostringstream out;
    out << report.file << '\n';
    if (report.facts)
        tellFacts(out, *report.facts);
    if (report.opening)
        tellOpening(out, *report.opening);
    else
        out << "  does not open: " << report.opening.error().message << '\n';
    return out.str();
}

ordered_json jsonOf(const PictureReport& report) {
    ordered_json json = {{"file", report.file}, {"opens", report.opening.ok()}};
    if (const auto& facts = report.facts) {
        json["format"] = nameOf(facts->format);
        json["bits"] = facts->bitsPerSample;
        json["alpha"] = facts->hasAlpha;
        json["stored"] = {facts->width, facts->height};
        json["orientation"] = static_cast<int>(facts->orientation);
        json["profile"] = facts->profile.empty() ? ordered_json() : ordered_json(facts->profile);
    }
    if (!report.opening) {
        json["error"] = report.opening.error().message;
        return json;
    }
    const Opening& opening = *report.opening;
    json["representations"] = ordered_json::array();
    for (const Size& size : opening.representations)
        json["representations"].push_back(pair(size));
    json["image"] = pair(opening.image);
    json["planes"] = {opening.plane.width, opening.plane.height};
    json["maskScale"] = opening.plane.maskScale;
    json["notice"] = opening.notice;
    return json;
}

}  // namespace trimora::batch
