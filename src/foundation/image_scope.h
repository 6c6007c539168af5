#pragma once

namespace vkr {

// Releases a picture record at scope end, on every way out. Image is CImage, CShortImage or CYuvImage, or an array of
// them.
template <class Image>
class ImageScope {
public:
    explicit ImageScope(Image& image) : m_image(image) {}
    ~ImageScope() { ReleaseAll(m_image); }
    ImageScope(const ImageScope&) = delete;
    ImageScope& operator=(const ImageScope&) = delete;

private:
    template <class Record>
    static void ReleaseAll(Record& record)
    {
        record.Release();
    }
    template <class Record, int n>
    static void ReleaseAll(Record (&records)[n])
    {
        for (Record& record : records) record.Release();
    }
    Image& m_image;
};

}  // namespace vkr
