#pragma once

#include <tiffio.h>

#include "foundation/Result.h"

namespace trimora::codecs {

/// Those functions of libtiff that are called here, under its names without their "TIFF". The library is
/// loaded with the first TIFF file: with the three that it stands on it took a millisecond of every start.
struct TiffLibrary {
    decltype(&::TIFFClientOpenExt) ClientOpenExt;
    decltype(&::TIFFClose) Close;
    decltype(&::TIFFCurrentDirOffset) CurrentDirOffset;
    decltype(&::TIFFGetField) GetField;
    decltype(&::TIFFGetFieldDefaulted) GetFieldDefaulted;
    decltype(&::TIFFIsTiled) IsTiled;
    decltype(&::TIFFLastDirectory) LastDirectory;
    decltype(&::TIFFOpenOptionsAlloc) OpenOptionsAlloc;
    decltype(&::TIFFOpenOptionsFree) OpenOptionsFree;
    decltype(&::TIFFOpenOptionsSetErrorHandlerExtR) OpenOptionsSetErrorHandlerExtR;
    decltype(&::TIFFOpenOptionsSetMaxSingleMemAlloc) OpenOptionsSetMaxSingleMemAlloc;
    decltype(&::TIFFOpenOptionsSetWarningHandlerExtR) OpenOptionsSetWarningHandlerExtR;
    decltype(&::TIFFRGBAImageBegin) RGBAImageBegin;
    decltype(&::TIFFRGBAImageEnd) RGBAImageEnd;
    decltype(&::TIFFRGBAImageGet) RGBAImageGet;
    decltype(&::TIFFReadDirectory) ReadDirectory;
    decltype(&::TIFFReadScanline) ReadScanline;
    decltype(&::TIFFReadTile) ReadTile;
    decltype(&::TIFFScanlineSize) ScanlineSize;
    decltype(&::TIFFSetSubDirectory) SetSubDirectory;
    decltype(&::TIFFTileSize64) TileSize64;

    /// The one of this process, loaded with the first call. An error where it is not installed or memory is
    /// missing; the next call tries again. Any thread.
    [[nodiscard]] static foundation::Result<const TiffLibrary*> get();
};

}  // namespace trimora::codecs
