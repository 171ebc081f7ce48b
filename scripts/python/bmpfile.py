"""Uncompressed BMP files of the two kinds the packager loads: 1 bit per pixel and 4 bits per pixel
(16 grey levels), with a 40-byte info header and a grey palette.

The example resources (examples/make-example-bmps), the fuzz seed corpus (fuzz/make-seed-corpus) and
the end-to-end timing trees (bench/e2e/run) are all written through this module. Scripts import it
by path:

    sys.path.insert(0, os.path.join(REPO, "scripts", "python"))
    import bmpfile

    data = bmpfile.pack_rows([[0, 1, 1, 0], [1, 0, 0, 1]], 1)     # palette indices, top row first
    file_bytes = bmpfile.bmp(4, 2, 1, data)                       # bottom-up, black first

Only the standard library is used, and the output depends on the arguments alone.
"""

import struct

FILE_HEADER_SIZE = 14
INFO_HEADER_SIZE = 40
# 72 dots per inch, what most drawing programs write; the packager does not read it.
PIXELS_PER_METRE = 2835


def row_stride(width, bits_per_pixel):
    """Bytes of one stored row: the row's bits rounded up to whole 4-byte words."""
    return (width * bits_per_pixel + 31) // 32 * 4


def grey_palette(bits_per_pixel, white_first=False):
    """(red, green, blue) entries of an even grey ramp over every index of the bit depth, from black
    to white, or from white to black when white_first. The packager looks only at the first entry:
    a white one makes it take the indices as inverted grey levels."""
    colours = 1 << bits_per_pixel
    palette = []
    for index in range(colours):
        level = (colours - 1 - index if white_first else index) * 255 // (colours - 1)
        palette.append((level, level, level))
    return palette


def pack_rows(rows, bits_per_pixel, top_down=False):
    """The pixel data of a file from rows of palette indices given top row first: each row packed
    with the leftmost pixel in the high bits of a byte and padded with zeros to the row stride,
    stored bottom row first unless top_down (the file then declares a negative height)."""
    data = bytearray()
    for row in rows if top_down else reversed(rows):
        packed = bytearray()
        bits = 0
        count = 0
        for index in row:
            bits = (bits << bits_per_pixel) | index
            count += bits_per_pixel
            if count == 8:
                packed.append(bits)
                bits = 0
                count = 0
        if count:
            packed.append(bits << (8 - count))
        packed.extend(b"\0" * (row_stride(len(row), bits_per_pixel) - len(packed)))
        data.extend(packed)
    return bytes(data)


def bmp(width, height, bits_per_pixel, pixel_data, white_first=False):
    """A whole file: file header, info header, the grey palette of grey_palette and pixel_data as
    given (the stored rows in file order, padding included; a negative height declares them top
    row first). The sizes in the headers are those of what is written, so a caller that gives
    fewer or more bytes than the rows need gets a file that says so."""
    palette = grey_palette(bits_per_pixel, white_first)
    colours = b"".join(struct.pack("<BBBB", blue, green, red, 0) for red, green, blue in palette)
    data_offset = FILE_HEADER_SIZE + INFO_HEADER_SIZE + len(colours)
    file_header = struct.pack("<2sIHHI", b"BM", data_offset + len(pixel_data), 0, 0, data_offset)
    info_header = struct.pack("<IiiHHIIiiII", INFO_HEADER_SIZE, width, height, 1, bits_per_pixel, 0,
                              len(pixel_data), PIXELS_PER_METRE, PIXELS_PER_METRE, len(palette), 0)
    return file_header + info_header + colours + bytes(pixel_data)
