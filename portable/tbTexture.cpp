#include "tbTexture.h"

#include <tamber/io/tbEntry.h>
#include <tamber/kernel/tbArena.h>

#include "tbiSharedBlock.h"
#include "tbiTraitApply.h"

#include <algorithm>
#include <cstring>
#include <utility>

TB_DEFINE_VISUAL_TRAIT_CLASS(tbTexture, tbVisualTrait)

namespace
{
constexpr int BYTES_PER_PIXEL = 4;

std::atomic<tbTraitApplyFunc> textureFunc{nullptr};

/// A copy from `arena` or, when that is null, from the heap; null for null and when memory is out.
char* copyText(const char* text, tbArena* arena)
{
    if (!text)
        return nullptr;
    const std::size_t size = std::strlen(text) + 1;
    char* copy = static_cast<char*>(arena ? tbMemory::mallocFrom(arena, size) : tbMemory::malloc(size));
    if (copy)
        std::memcpy(copy, text, size);
    return copy;
}

bool isSide(int pixels)
{
    return pixels >= 1 && pixels <= tbTexture::MAX_SIZE;
}

bool holdsTranslucentPixel(const void* rgba, std::size_t size)
{
    const auto* bytes = static_cast<const unsigned char*>(rgba);
    for (std::size_t i = 3; i < size; i += BYTES_PER_PIXEL)
        if (bytes[i] != 255)
            return true;
    return false;
}
} // namespace

tbTexture::tbTexture()
{
    initInstance();
}

tbTexture::tbTexture(const tbTexture& other) : tbVisualTrait(other)
{
    initInstance();
    assign(other);
}

tbTexture::tbTexture(const tbTexture& other, Disposable disposable) : tbVisualTrait(other, disposable)
{
    fileName = copyText(other.fileName, disposable.arena);
    if (other.image)
        image = tbiSharedBlock::create(other.image->getData(), other.image->getSize(), disposable.arena);
    if (image)
    {
        width = other.width;
        height = other.height;
        std::memcpy(format, other.format, sizeof(format));
        translucent = other.translucent;
    }
    wrapS = other.wrapS;
    wrapT = other.wrapT;
    filter = other.filter;
}

tbTexture& tbTexture::operator=(const tbTexture& other)
{
    if (this == &other)
        return *this;
    tbVisualTrait::operator=(other);
    assign(other);
    return *this;
}

tbTexture::~tbTexture()
{
    deleteInstance();
    removeImage();
    tbMemory::free(fileName);
}

void tbTexture::assign(const tbTexture& other)
{
    setFileName(other.fileName);
    if (other.image)
        other.image->ref();
    replaceImage(other.image, other.width, other.height, other.format);
    translucent = other.translucent;
    wrapS = other.wrapS;
    wrapT = other.wrapT;
    filter = other.filter;
}

void tbTexture::setFileName(const char* path)
{
    tbMemory::free(std::exchange(fileName, copyText(path, nullptr)));
}

bool tbTexture::setPixels(int imageWidth, int imageHeight, const void* rgba)
{
    if (!isSide(imageWidth) || !isSide(imageHeight) || !rgba)
        return false;
    const std::size_t size = std::size_t(imageWidth) * std::size_t(imageHeight) * BYTES_PER_PIXEL;
    tbiSharedBlock* block = tbiSharedBlock::create(rgba, size);
    if (block)
        takePixels(block, imageWidth, imageHeight);
    return block != nullptr;
}

/// Takes over the caller's reference on `block`, as replaceImage() does.
void tbTexture::takePixels(tbiSharedBlock* block, int imageWidth, int imageHeight)
{
    replaceImage(block, imageWidth, imageHeight, {});
    translucent = holdsTranslucentPixel(block->getData(), block->getSize());
}

bool tbTexture::setImageFile(const void* bytes, int size, std::string_view imageFormat)
{
    if (!bytes || size < 1)
        return false;
    tbiSharedBlock* block = tbiSharedBlock::create(bytes, std::size_t(size));
    if (!block)
        return false;
    replaceImage(block, 0, 0, imageFormat.empty() ? "image" : imageFormat);
    return true;
}

void tbTexture::removeImage()
{
    replaceImage(nullptr, 0, 0, {});
}

/// Takes over the caller's reference on `block`.
void tbTexture::replaceImage(tbiSharedBlock* block, int imageWidth, int imageHeight,
                             std::string_view imageFormat)
{
    if (tbiSharedBlock* old = std::exchange(image, block))
        old->unRef();
    width = imageWidth;
    height = imageHeight;
    translucent = false;
    char text[MAX_FORMAT_LEN + 1] = {};
    imageFormat.copy(text, MAX_FORMAT_LEN);
    std::memcpy(format, text, sizeof(format));
}

bool tbTexture::setWrap(WRAP s, WRAP t)
{
    if (s < WRAP_REPEAT || s > WRAP_MIRROR || t < WRAP_REPEAT || t > WRAP_MIRROR)
        return false;
    wrapS = s;
    wrapT = t;
    return true;
}

bool tbTexture::setFilter(FILTER value)
{
    if (value < FILTER_NEAREST || value > FILTER_MIPMAP)
        return false;
    filter = value;
    return true;
}

const void* tbTexture::getImage() const
{
    return image ? image->getData() : nullptr;
}

std::size_t tbTexture::getImageSize() const
{
    return image ? image->getSize() : 0;
}

void tbTexture::setApplyFunc(tbTraitApplyFunc func)
{
    textureFunc.store(func, std::memory_order_release);
}

tbBase* tbTexture::createCopy() const
{
    return new tbTexture(*this);
}

tbBase* tbTexture::createDisposableCopy(tbArena* arena) const
{
    return new (arena) tbTexture(*this, Disposable{arena});
}

tbEntry* tbTexture::read(tbFile* file, tbEntry* entry)
{
    entry = tbVisualTrait::read(file, entry);
    if (!entry)
        return nullptr;
    const auto s = WRAP(entry->readInt());
    setWrap(s, WRAP(entry->readInt()));
    setFilter(FILTER(entry->readInt()));
    setFileName(nullptr);
    if (const int length = entry->readCount(1))
    {
        fileName = static_cast<char*>(tbMemory::malloc(std::size_t(length)));
        if (fileName)
            entry->readString(fileName, length);
        else
            entry->fail("memory holds the name of the image");
    }
    return readImage(entry) ? entry : nullptr;
}

bool tbTexture::readImage(tbEntry* entry)
{
    const int imageWidth = entry->readInt();
    const int imageHeight = entry->readInt();
    char imageFormat[sizeof(format)] = {};
    entry->readChunk(imageFormat, sizeof(imageFormat));
    imageFormat[MAX_FORMAT_LEN] = 0;
    const int size = entry->readCount(1);
    if (entry->hasFailed())
        return false;
    removeImage();
    if (size == 0)
        return true;
    const bool isFile = imageFormat[0] != 0;
    if (!isFile &&
        (!isSide(imageWidth) || !isSide(imageHeight) ||
         std::size_t(size) != std::size_t(imageWidth) * std::size_t(imageHeight) * BYTES_PER_PIXEL))
    {
        entry->fail("an image holds four bytes for each of its pixels");
        return false;
    }
    tbiSharedBlock* block = tbiSharedBlock::createEmpty(std::size_t(size));
    if (!block)
        return false;
    entry->readChunk(block->getOwnData(), size);
    if (isFile)
        replaceImage(block, 0, 0, imageFormat);
    else
        takePixels(block, imageWidth, imageHeight);
    return true;
}

tbEntry* tbTexture::write(tbFile* file, tbEntry* entry) const
{
    entry = tbVisualTrait::write(file, entry);
    if (!entry)
        return nullptr;
    entry->writeInt(wrapS);
    entry->writeInt(wrapT);
    entry->writeInt(filter);
    entry->writeInt(fileName ? int(std::strlen(fileName)) + 1 : 0);
    if (fileName)
        entry->writeString(fileName);
    entry->writeInt(width);
    entry->writeInt(height);
    entry->writeChunk(format, sizeof(format));
    entry->writeInt(int(getImageSize()));
    if (image)
        entry->writeChunk(image->getData(), int(image->getSize()));
    return entry;
}

bool tbTexture::isEqual(tbTrait* other) const
{
    if (!isSameKind(other))
        return false;
    const auto& texture = static_cast<const tbTexture&>(*other);
    const bool sameName = fileName && texture.fileName ? std::strcmp(fileName, texture.fileName) == 0
                                                       : fileName == texture.fileName;
    const bool sameImage = image && texture.image ? image->isEqual(*texture.image) : image == texture.image;
    return sameName && sameImage && width == texture.width && height == texture.height &&
           std::strcmp(format, texture.format) == 0 && wrapS == texture.wrapS && wrapT == texture.wrapT &&
           filter == texture.filter;
}

void tbTexture::apply(tbTravContext* context) const
{
    tbiSetTransparencyInput(context, TBI_TEXTURE_ALPHA, translucent);
}

void tbTexture::apply(tbCamera* camera) const
{
    tbiApplyTrait(this, camera, textureFunc);
}
