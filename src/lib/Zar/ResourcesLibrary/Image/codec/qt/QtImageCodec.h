#pragma once

// The interface between the Qt image loader and the module that holds its Qt code. Only a build
// that meets a file in a Qt format loads that module, and with it Qt's libraries; every other build
// starts without them. The interface is plain C, so that nothing but these declarations is shared
// across the module's boundary.

#ifdef __cplusplus
extern "C" {
#endif

// A decoded image as Qt holds it. The pixels stay owned by the module until release is called.
struct ZarQtImage {
    int width;
    int height;
    int qtFormat; // a QImage::Format value
    long long sizeInBytes;
    unsigned char const* bits;
    void* owner; // the module's own handle of the image
};

// The layout of ZarQtImageCodec (and of ZarQtImage) this build was compiled with. A change to
// either struct changes it, so that a module left over from another build is refused by name
// rather than called through a struct that does not match.
#define ZAR_QT_IMAGE_CODEC_VERSION 2

struct ZarQtImageCodec {
    // ZAR_QT_IMAGE_CODEC_VERSION of the module's build; first, so that a loader of any build can
    // read it before trusting the rest.
    unsigned version;
    // Decodes the file into image; a file that Qt cannot read gives an image of 0 bytes. The path
    // is taken byte for byte as Latin-1 text.
    void (*load)(char const* path, ZarQtImage* image);
    // Frees what load left in image.
    void (*release)(ZarQtImage* image);
};

// The one function the module exports, found by its name ZAR_QT_IMAGE_CODEC_ENTRY.
typedef ZarQtImageCodec const* (*ZarQtImageCodecEntry)(void);
#define ZAR_QT_IMAGE_CODEC_ENTRY "zar_qt_image_codec"

#ifdef __cplusplus
}
#endif
