#include "Zar/ResourcesLibrary/Image/InputSequence.h"

#include "Zar/Lt/Exceptions/Check.h"
#include "Zar/ResourcesLibrary/Image/InputFile.h"
#include "Zar/ResourcesLibrary/Image/codec/IndexPattern.h"
#include "Zar/ResourcesLibrary/ResourcesLibraryException.h"

#include <exception>
#include <istream>
#include <memory>

namespace Zar::ResourcesLibrary::Image {

namespace {

// The failures' function texts, fixed so that they do not depend on the compiler's spelling.
constexpr char kCheckInputFunction[] = "bool Zar::ResourcesLibrary::Image::InputSequence::CheckInput() const";
constexpr char kAddListFunction[]
    = "void Zar::ResourcesLibrary::Image::InputSequence::AddList(const string&)";
constexpr char kLoadAllFunction[]
    = "void Zar::ResourcesLibrary::Image::InputSequence::LoadAll(const Callback&, int)";

// Reads one line, keeping at most maxLength characters of it: the rest of a longer line is
// skipped up to its line feed, so the next line is read whole. Returns false at end of file.
bool ReadLine(std::istream& stream, std::string& line, size_t maxLength)
{
    line.clear();
    bool any = false;
    for (int c = stream.get(); c != std::char_traits<char>::eof(); c = stream.get()) {
        any = true;
        if (c == '\n')
            break;
        if (line.size() < maxLength)
            line += static_cast<char>(c);
    }
    return any;
}

// A name ends at a NUL byte, as a C string would, and loses the white space around it.
std::string TrimmedName(std::string const& line)
{
    std::string name = line.substr(0, line.find('\0'));
    size_t const first = name.find_first_not_of(InputSequence::kWhiteSpace);
    if (first == std::string::npos)
        return {};
    size_t const last = name.find_last_not_of(InputSequence::kWhiteSpace);
    return name.substr(first, last - first + 1);
}

} // namespace

InputSequence::InputSequence(
    FileFormat format, std::string const& directory, std::string const& pattern, bool required)
    : _input(Input::Create(format, ImageFormat::Unknown, std::string(directory), std::string(pattern)))
    , _directory(directory)
    , _pattern(pattern)
    , _required(required)
{
}

InputSequence::~InputSequence() = default;

bool InputSequence::CheckInput() const
{
    if (_input)
        return true;
    if (_required)
        throw ResourcesLibraryException(
            ZAR_SOURCE_INFO_OF(kCheckInputFunction, ZAR_SOURCE_FILE, 29), "No input");
    return false;
}

void InputSequence::AddItem(std::string const& name) { _items.push_back(name); }

void InputSequence::AddList(string const& listPath)
{
    std::unique_ptr<std::istream> const stream = InputFile::Open(listPath.c_str());
    if (!stream) {
        if (_required)
            throw ResourcesLibraryException(
                ZAR_SOURCE_INFO_OF(kAddListFunction, ZAR_SOURCE_FILE, 55), "Cannot open " + listPath);
        return;
    }
    std::string line;
    while (ReadLine(*stream, line, kMaxLineLength)) {
        std::string name = TrimmedName(line);
        if (!name.empty())
            _items.push_back(std::move(name));
    }
}

void InputSequence::LoadAll(Callback const& callback, int start)
{
    if (!CheckInput())
        return;
    int index = start;
    std::string errors;
    for (std::string const& item : _items) {
        std::string const name = BareName(item);
        // A failed item still uses up its number. Counting wraps instead of overflowing.
        index = static_cast<int>(static_cast<unsigned>(index) + 1u);
        try {
            MutableImage image = _input->Read(index, item);
            if (image.IsEmpty())
                continue;
            callback(index, name, image);
        } catch (std::exception const& e) {
            if (_required)
                errors += ErrorLinePrefix(index, item) + e.what() + "\n";
        } catch (...) {
            if (_required)
                errors += ErrorLinePrefix(index, item) + "unknown exception\n";
        }
    }
    if (_required && !errors.empty())
        throw ResourcesLibraryException(ZAR_SOURCE_INFO_OF(kLoadAllFunction, ZAR_SOURCE_FILE, 85), errors);
}

std::string InputSequence::GetFilePath(int index, std::string const& name) const
{
    std::string const path = IndexPattern::FilePath(_directory, _pattern, index, name);
    if (!Input::UsableExtension(path).empty())
        return path;
    return IndexPattern::WithExtension(path, _input ? Input::GetExtension(_input->GetFileFormat()) : nullptr);
}

MutableImage InputSequence::Read(int index)
{
    if (!CheckInput())
        return MutableImage();
    char path[IndexPattern::kPathBufferSize];
    IndexPattern::Format(path, sizeof(path), IndexPattern::OrDefault(_pattern), index);
    return _input->Load(static_cast<char const*>(path));
}

MutableImage InputSequence::Read(int index, std::string const& name)
{
    if (name.empty())
        return Read(index);
    if (!CheckInput())
        return MutableImage();
    return _input->Load(GetFilePath(index, name));
}

std::string InputSequence::BareName(std::string const& item)
{
    size_t const slash = item.rfind('/');
    std::string name = slash == std::string::npos ? item : item.substr(slash + 1);
    std::string_view const extension = Input::UsableExtension(name);
    name.resize(name.size() - extension.size());
    return name;
}

char const* InputSequence::DefaultExtension() const
{
    char const* extension = _input ? Input::GetExtension(_input->GetFileFormat()) : nullptr;
    return extension ? extension : "";
}

std::string InputSequence::ErrorLinePrefix(int index, std::string const& item) const
{
    return std::to_string(index) + " " + item + DefaultExtension() + " ";
}

} // namespace Zar::ResourcesLibrary::Image
