#pragma once

#include "Zar/ResourcesLibrary/Image/FileFormat.h"
#include "Zar/ResourcesLibrary/Image/MutableImage.h"
#include "Zar/ResourcesLibrary/Image/codec/Input.h"

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace Zar::ResourcesLibrary::Image {

// An ordered list of image names (usually read from a folder's list.txt) bound to one loader.
// LoadAll loads every item in turn and hands each image to a callback; failures of single items
// are gathered and reported together at the end, so that one bad file does not hide the others.
class InputSequence {
public:
    // Receives the running number, the bare name (no folder, no extension) and the loaded image.
    // Its result is ignored: the walk always covers the whole list.
    using Callback = std::function<bool(int index, std::string_view const& name, MutableImage& image)>;

    // AddList names its parameter type through this alias, so that the function text carried by
    // its exceptions reads "AddList(const string&)", the text that readers of failure logs know.
    using string = std::string;

    // A list line keeps at most this many characters; the rest of a longer line is dropped.
    static constexpr size_t kMaxLineLength = 255;
    // A list line loses these at both ends.
    static constexpr char kWhiteSpace[] = " \t\r\n";

    InputSequence(FileFormat format, std::string const& directory, std::string const& pattern, bool required);
    ~InputSequence();

    InputSequence(InputSequence const&) = delete;
    InputSequence& operator=(InputSequence const&) = delete;

    bool CheckInput() const;
    void AddItem(std::string const& name);
    void AddList(string const& listPath);
    void LoadAll(Callback const& callback, int start);
    std::string GetFilePath(int index, std::string const& name) const;
    MutableImage Read(int index);
    MutableImage Read(int index, std::string const& name);

    Input const* GetInput() const noexcept { return _input.get(); }
    std::vector<std::string> const& Items() const noexcept { return _items; }

    // The item without its folders and without its extension, when it has a usable one.
    static std::string BareName(std::string const& item);

    // The extension of the loader's file format, written after an item in its error line; empty for
    // the detecting loader, and when there is no loader.
    char const* DefaultExtension() const;
    // How LoadAll's error line for an item starts; the failure's text follows it.
    std::string ErrorLinePrefix(int index, std::string const& item) const;

private:
    std::unique_ptr<Input> _input;
    std::string _directory;
    std::string _pattern;
    std::vector<std::string> _items;
    bool _required;
};

} // namespace Zar::ResourcesLibrary::Image
