#pragma once

#include <portable/tbImageCarrier.h>
#include <portable/tbPortableApi.h>
#include <portable/tbTraitApply.h>
#include <tamber/trav/tbVisualTrait.h>

#include <string_view>

class tbiSharedBlock;

// An image on a surface: the name of an image file, or an image that the trait carries itself, either as pixels or
// still in the form of an image file. Without any of these nothing is textured.
class TB_PORTABLE_API tbTexture : public tbVisualTrait, public tbImageCarrier
{
    TB_CLASS(tbTexture, tbVisualTrait)

public:
    /// What becomes of texture coordinates beyond [0, 1].
    enum WRAP : std::int32_t
    {
        WRAP_REPEAT = 0,
        WRAP_CLAMP = 1,
        WRAP_MIRROR = 2
    };
    enum FILTER : std::int32_t
    {
        FILTER_NEAREST = 0,
        FILTER_LINEAR = 1,
        FILTER_MIPMAP = 2 ///< linear within and between the levels of a mip-map
    };
    static constexpr int MAX_SIZE = 16384;   ///< pixels along a side
    static constexpr int MAX_FORMAT_LEN = 8; ///< characters of a format's name

    tbTexture();
    /// Shares the image with `other`.
    tbTexture(const tbTexture& other);
    tbTexture& operator=(const tbTexture& other);

    /// A copy of `path`, which is looked for as given by whoever draws; null for none. An image carried stays.
    void setFileName(const char* path);
    /// Carries a copy of width x height pixels of red, green, blue and alpha bytes, top row first. False, and
    /// nothing changed, when a side is below 1 or above MAX_SIZE, or memory is out.
    bool setPixels(int imageWidth, int imageHeight, const void* rgba);
    /// Carries a copy of an image file of `size` bytes; `format` is its usual extension, for example "png", and is
    /// cut to MAX_FORMAT_LEN. False, and nothing changed, when there are no bytes or memory is out.
    bool setImageFile(const void* bytes, int size, std::string_view format);
    /// Drops the image carried.
    void removeImage();
    /// False, and nothing changed, when a value is none of the enumeration.
    bool setWrap(WRAP s, WRAP t);
    bool setFilter(FILTER value);

    /// Null when there is none.
    const char* getFileName() const { return fileName; }
    /// Pixels, or the bytes of an image file when getFormat() is not empty; null when no image is carried.
    const void* getImage() const override;
    std::size_t getImageSize() const override;
    const char* getFormat() const { return format; }
    /// 0 unless pixels are carried.
    int getWidth() const { return width; }
    int getHeight() const { return height; }
    /// True when pixels are carried of which one is not opaque.
    bool isTranslucent() const { return translucent; }
    WRAP getWrapS() const { return wrapS; }
    WRAP getWrapT() const { return wrapT; }
    FILTER getFilter() const { return filter; }

    static void setApplyFunc(tbTraitApplyFunc func);

    tbBase* createCopy() const override;
    tbBase* createDisposableCopy(tbArena* arena) const override;
    /// Fails when the image does not fit the entry or contradicts its size.
    tbEntry* read(tbFile* file, tbEntry* entry) override;
    tbEntry* write(tbFile* file, tbEntry* entry) const override;
    bool isEqual(tbTrait* other) const override;
    void apply(tbTravContext* context) const override;
    void apply(tbCamera* camera) const override;

protected:
    tbTexture(const tbTexture& other, Disposable disposable);
    ~tbTexture() override;

private:
    void assign(const tbTexture& other);
    void takePixels(tbiSharedBlock* block, int imageWidth, int imageHeight);
    void replaceImage(tbiSharedBlock* block, int imageWidth, int imageHeight, std::string_view imageFormat);
    bool readImage(tbEntry* entry);

    char* fileName = nullptr;
    tbiSharedBlock* image = nullptr;
    std::int32_t width = 0;
    std::int32_t height = 0;
    char format[MAX_FORMAT_LEN + 1] = {};
    bool translucent = false;
    WRAP wrapS = WRAP_REPEAT;
    WRAP wrapT = WRAP_REPEAT;
    FILTER filter = FILTER_MIPMAP;
};
