#include "tools/rightclick/com_pointer.h"
#include "tools/rightclick/failure.h"
#include "tools/rightclick/picture_win32.h"

#include <wincodec.h>

namespace rightclick {

void writePng(const std::u16string& file, const Picture& picture) {
    constexpr const char* kMessage = "the picture cannot be written";
    ComPointer<IWICImagingFactory> factory;
    require(CoCreateInstance(CLSID_WICImagingFactory, nullptr, CLSCTX_INPROC_SERVER, IID_IWICImagingFactory,
                             receive(factory)),
            "the system has no imaging component");
    ComPointer<IWICStream> stream;
    require(factory.get()->CreateStream(receive(stream)), kMessage);
    require(stream.get()->InitializeFromFilename(platform::wide(file), GENERIC_WRITE), kMessage);
    ComPointer<IWICBitmapEncoder> encoder;
    require(factory.get()->CreateEncoder(GUID_ContainerFormatPng, nullptr, receive(encoder)), kMessage);
    require(encoder.get()->Initialize(stream.get(), WICBitmapEncoderNoCache), kMessage);
    ComPointer<IWICBitmapFrameEncode> frame;
    require(encoder.get()->CreateNewFrame(receive(frame), nullptr), kMessage);
    require(frame.get()->Initialize(nullptr), kMessage);
    require(frame.get()->SetSize(picture.width, picture.height), kMessage);
    WICPixelFormatGUID format = GUID_WICPixelFormat32bppBGRA;
    require(frame.get()->SetPixelFormat(&format), kMessage);
    const UINT rowBytes = picture.width * 4;
    std::vector<std::uint32_t> pixels = picture.pixels;  // the call is declared for changeable bytes
    require(frame.get()->WritePixels(picture.height, rowBytes, rowBytes * picture.height,
                                     reinterpret_cast<BYTE*>(pixels.data())),
            kMessage);
    require(frame.get()->Commit(), kMessage);
    require(encoder.get()->Commit(), kMessage);
}

}  // namespace rightclick
