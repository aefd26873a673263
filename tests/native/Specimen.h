// A sound native file, and how tests damage it: word by word, at the places of its tables and of its fields.
#pragma once

#include <apps/tamber/native/Image.h>
#include <apps/tamber/native/Record.h>

#include <cstdint>
#include <set>
#include <string>

namespace tbtest
{
/// A scene as the library writes it, with an object of each class whose values have rules.
const std::string& specimenFile();

/// A file with an object of every class, an array of every type, an entry of nobody's class and the list of plug-ins.
std::string everyClassFile(bool swapped = false, bool packed = false);

/// The bytes of a file as the program reads them.
std::unique_ptr<native::ImageSource> sourceOf(const std::string& bytes);
native::Image imageOf(const std::string& bytes);

/// The numbers of all that a check finds.
std::set<int> findingsOf(const std::string& bytes);
std::set<int> findingsOf(std::unique_ptr<native::ImageSource> source);

class Specimen
{
public:
    std::string bytes = specimenFile();

    void setByte(std::size_t offset, int value) { bytes.at(offset) = char(value); }
    void setWord(std::size_t offset, std::uint32_t value);

    /// Directory records: `field` is one of the layout's offsets.
    void setRecord(int entry, unsigned field, std::uint32_t value);
    std::uint32_t getRecord(int entry, unsigned field) const;
    int numEntries() const;
    int last() const { return numEntries() - 1; }
    /// The `nth` entry of a class.
    int find(const char* className, int nth = 0) const;

    std::size_t tagPlace(const char* className) const;
    void renameTag(const char* className, const char* newName);

    /// Where the value `i` of a field of the class's `nth` entry lies; fields of the first `nth` item alike.
    std::size_t place(const char* className, const char* field, int i = 0, int nth = 0) const;
    /// Where the number before the field's values lies.
    std::size_t countPlace(const char* className, const char* field) const;
    void setValue(const char* className, const char* field, std::uint32_t value, int i = 0);
    void setNumber(const char* className, const char* field, float value, int i = 0);
    void setCount(const char* className, const char* field, std::uint32_t value);

    /// The last entry's bytes in the file, which end it.
    std::string lastStored() const;
    void setLastStored(const std::string& stored, std::uint32_t size, std::uint32_t compression);

private:
    std::vector<native::Field> fieldsOf(int entry) const;
    /// A field of the class's `nth` entry, with offsets in the file.
    native::Field locate(const char* className, const char* name, int nth = 0) const;
};
} // namespace tbtest
