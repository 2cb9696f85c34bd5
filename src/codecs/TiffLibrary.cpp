#include "codecs/TiffLibrary.h"

#include "files/LateLibrary.h"

namespace trimora::codecs {

using foundation::Result;

namespace {

Result<TiffLibrary> load() {
    return files::loadFunctions<TiffLibrary>(
        "libtiff.so.6", [](files::LateFunctions& find, TiffLibrary& made) {
            find("TIFFClientOpenExt", made.ClientOpenExt);
            find("TIFFClose", made.Close);
            find("TIFFCurrentDirOffset", made.CurrentDirOffset);
            find("TIFFGetField", made.GetField);
            find("TIFFGetFieldDefaulted", made.GetFieldDefaulted);
            find("TIFFIsTiled", made.IsTiled);
            find("TIFFLastDirectory", made.LastDirectory);
            find("TIFFOpenOptionsAlloc", made.OpenOptionsAlloc);
            find("TIFFOpenOptionsFree", made.OpenOptionsFree);
            find("TIFFOpenOptionsSetErrorHandlerExtR", made.OpenOptionsSetErrorHandlerExtR);
            find("TIFFOpenOptionsSetMaxSingleMemAlloc", made.OpenOptionsSetMaxSingleMemAlloc);
            find("TIFFOpenOptionsSetWarningHandlerExtR", made.OpenOptionsSetWarningHandlerExtR);
            find("TIFFRGBAImageBegin", made.RGBAImageBegin);
            find("TIFFRGBAImageEnd", made.RGBAImageEnd);
            find("TIFFRGBAImageGet", made.RGBAImageGet);
            find("TIFFReadDirectory", made.ReadDirectory);
            find("TIFFReadScanline", made.ReadScanline);
            find("TIFFReadTile", made.ReadTile);
            find("TIFFScanlineSize", made.ScanlineSize);
            find("TIFFSetSubDirectory", made.SetSubDirectory);
            find("TIFFTileSize64", made.TileSize64);
        });
}

}  // namespace

Result<const TiffLibrary*> TiffLibrary::get() {
    static files::LoadedOnce<TiffLibrary> library;
    return library.get(load);
}

}  // namespace trimora::codecs
