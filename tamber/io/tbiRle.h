#pragma once

// Run-length packing of entry data: pairs (count, value), then a count of 0.
namespace tbiRle
{

/// Bytes that `packed` unpacks to; -1 when its `length` bytes are no complete sequence of pairs.
long long unpackedSize(const unsigned char* packed, int length);
/// Unpacks what unpackedSize() has measured into `data`.
void unpack(const unsigned char* packed, unsigned char* data);

/// Fewer bytes than these are not worth packing.
inline constexpr int SHORTEST = 10;
/// Packs `size` bytes into `packed`, which has room for as many. Returns the packed length; 0, as soon as it shows,
/// when packing does not pay.
int pack(const unsigned char* data, int size, unsigned char* packed);

} // namespace tbiRle
