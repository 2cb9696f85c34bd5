#include "codecs/GifLibrary.h"

#include "files/LateLibrary.h"

namespace trimora::codecs {

using foundation::Result;

namespace {

Result<GifLibrary> load() {
    return files::loadFunctions<GifLibrary>("libgif.so.7", [](files::LateFunctions& find, GifLibrary& made) {
        find("DGifCloseFile", made.CloseFile);
        find("DGifExtensionToGCB", made.ExtensionToGCB);
        find("DGifGetExtension", made.GetExtension);
        find("DGifGetExtensionNext", made.GetExtensionNext);
        find("DGifGetImageDesc", made.GetImageDesc);
        find("DGifGetLine", made.GetLine);
        find("DGifGetRecordType", made.GetRecordType);
        find("DGifOpen", made.Open);
        find("GifErrorString", made.ErrorString);
    });
}

}  // namespace

Result<const GifLibrary*> GifLibrary::get() {
    static files::LoadedOnce<GifLibrary> library;
    return library.get(load);
}

}  // namespace trimora::codecs
