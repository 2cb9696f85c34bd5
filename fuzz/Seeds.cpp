#include "Seeds.h"

#include <initializer_list>

#include "../tests/reliability/BadPictures.h"
#include "cutengine/kernels/MaskCodec.h"
#include "foundation/Bitmap.h"

namespace trimora::fuzz {
namespace {

using Buffer = std::vector<std::uint8_t>;
using foundation::Bitmap;

std::vector<Buffer> pictures(std::string_view format) {
    std::vector<Buffer> found;
    for (const reliability::NamedFile& file : reliability::smallSoundFiles()) {
        if (file.name.starts_with(format))
            found.push_back(file.bytes);
    }
    return found;
}

/// Of a height that gives each of several parts some rows.
std::vector<Buffer> jpegPictures() {
    std::vector<Buffer> found = pictures("jpeg");
    const Bitmap picture = codecs::samples::quarters(19, 121);
    for (const int shared : {1, 2}) {
        codecs::samples::JpegOptions options;
        options.quality = 75;
        options.across = options.down = shared;
        found.push_back(codecs::samples::jpeg(picture.view(), options));
        options.restartRows = 1;
        found.push_back(codecs::samples::jpeg(picture.view(), options));
    }
    return found;
}

std::vector<Buffer> texts(std::initializer_list<std::string_view> lines) {
    std::vector<Buffer> found;
    for (const std::string_view line : lines)
        found.emplace_back(line.begin(), line.end());
    return found;
}

/// Masks as they are written, and one as another program writes pictures.
std::vector<Buffer> snapshots() {
    std::vector<Buffer> found;
    for (const int holes : {0, 1, 40}) {
        Bitmap mask = std::move(Bitmap::createFilled(61, 47, {0, 0, 0, 255})).value();
        for (int i = 0; i < holes; ++i) {
            for (int y = i; y < mask.height(); y += 5)
                mask.setPixel((7 * i + y) % mask.width(), y, {0, 0, 0, static_cast<std::uint8_t>(6 * i)});
        }
        found.push_back(std::move(cutengine::kernels::encodeMask(mask.view())).value());
    }
    found.push_back(codecs::samples::png(codecs::samples::fading(53, 39).view()));
    return found;
}

std::vector<Buffer> scriptLines() {
    return texts(
        {R"({"do":"view","size":[900,600]})", R"({"do":"open","files":["a.jpg","b.png"],"wait":true})",
         R"({"do":"mouse","type":"drag","at":[1.5,2],"delta":[0,-3],"button":"right"})",
         R"({"do":"stroke","points":[[450,300],[480,300.25]]})",
         R"({"do":"modifiers","held":["option","command"]})", R"({"do":"key","code":34})",
         R"({"do":"set","property":"brushColor","value":[0.25,0.5,1,0.75]})",
         R"({"do":"answer","panel":"open","with":["a.png"]})",
         R"({"do":"slider","which":"eraserSize","typed":"70"})",
         R"({"do":"color","hue":0.3,"shade":[0.8,0.9]})", R"({"do":"clock","at":"2026-11-15T18:06:28"})",
         R"({"do":"sample","of":"mask","at":[[0,0],[5,7]]})", R"({"do":"advance","seconds":0.5})",
         R"({"do":"perform","on":"editor","selector":"back_pressed:"})"});
}

std::vector<Buffer> events() {
    return texts(
        {R"({"count":1,"end_timed_event":true,"list":[1,-2.5,null,{"deep":[]}],"name":"open \"it\""})",
         R"({"app_id":"id","data":"{\"time_on\":5}","end_timed_event":false,"event":"session_end",)"
         R"("timestamp":1735732800000})",
         R"({"custom_event_name":"level","large":18446744073709551615,"small":1e-300})", "no json"});
}

}  // namespace

std::vector<Buffer> seedsOf(std::string_view target) {
    if (target == "snapshot")
        return snapshots();
    if (target == "edit_script")
        return scriptLines();
    if (target == "event")
        return events();
    if (target == "jpeg")
        return jpegPictures();
    return pictures(target);
}

}  // namespace trimora::fuzz
