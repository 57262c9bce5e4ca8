#include "core/Container.h"

#include <cstring>
#include <limits>

#include "api/LastError.h"
#include "core/PoolHandleTable.h"

namespace zorvane::zorclient {

namespace {

constexpr std::uint8_t CONTAINER_TAG = 0x43;

// Never destroyed, as the message pool.
PoolHandleTable<Container>& table() {
    static auto* table_s = new PoolHandleTable<Container>(
        CONTAINER_TAG, ZORCLIENT_MSG_STATS_FREE_CONTAINERS, ZORCLIENT_MSG_STATS_ALLOC_CONTAINERS);
    return *table_s;
}

const char* kindName(std::uint8_t kind) noexcept {
    return kind == ZORCLIENT_MAP ? "map" : "stream";
}

// Where bytes that an append moved went: a caller's pointer into them (a value read from this
// very container and added again) is found at the same offset in their new place; any other
// pointer stays as it is. The old place is kept as a number only, since it may be freed by now.
class Relocation {
  public:
    Relocation(const std::uint8_t* before_p, std::size_t size, const std::uint8_t* after_p) noexcept
        : before_m(reinterpret_cast<std::uintptr_t>(before_p)),
          size_m(before_p != nullptr ? size : 0),
          after_mp(after_p) {}

    template <typename T>
    const T* operator()(const T* pointer_p) const noexcept {
        const auto address = reinterpret_cast<std::uintptr_t>(pointer_p);
        if (pointer_p == nullptr || address < before_m || address - before_m >= size_m) {
            return pointer_p;
        }
        return reinterpret_cast<const T*>(after_mp + (address - before_m));
    }

  private:
    std::uintptr_t before_m;
    std::size_t size_m;
    const std::uint8_t* after_mp;
};

}  // namespace

// ---- Handles and trees ------------------------------------------------------------------

Container* Container::acquireHandle() {
    std::uintptr_t handle = 0;
    Container* container_p = table().acquire(&handle);
    container_p->handle_m = reinterpret_cast<zorClient_opaqueContainer_pt>(handle);
    return container_p;
}

Container* Container::lookup(zorClient_opaqueContainer_pt handle) noexcept {
    return table().lookup(reinterpret_cast<std::uintptr_t>(handle));
}

Container* Container::openOnMessage(Message& msg, PartId part, std::uint8_t kind, bool writer) {
    Container* container_p = acquireHandle();
    container_p->kind_m = kind;
    container_p->writer_m = writer;
    container_p->msg_mp = &msg;
    container_p->part_m = part;
    container_p->next_mp = msg.firstContainer();
    if (container_p->next_mp != nullptr) {
        container_p->next_mp->prev_mp = container_p;
    }
    msg.firstContainer() = container_p;
    return container_p;
}

Container* Container::createInBuffer(std::uint8_t* buffer_p, std::size_t capacity,
                                     std::uint8_t kind) {
    Container* container_p = acquireHandle();
    FieldCodec::writeContainerHeader(buffer_p, kind, FieldCodec::CONTAINER_HEADER_SIZE);
    container_p->kind_m = kind;
    container_p->writer_m = true;
    container_p->buffer_mp = buffer_p;
    container_p->bufferCapacity_m = capacity;
    return container_p;
}

void Container::linkChild(Container* child_p) noexcept {
    child_p->msg_mp = msg_mp;
    child_p->part_m = part_m;
    child_p->buffer_mp = buffer_mp;
    child_p->bufferCapacity_m = bufferCapacity_m;
    child_p->parent_mp = this;
    child_p->next_mp = firstChild_mp;
    if (firstChild_mp != nullptr) {
        firstChild_mp->prev_mp = child_p;
    }
    firstChild_mp = child_p;
}

void Container::close(Container* container_p) noexcept {
    while (container_p->firstChild_mp != nullptr) {
        close(container_p->firstChild_mp);
    }
    Container* parent_p = container_p->parent_mp;
    if (container_p->prev_mp != nullptr) {
        container_p->prev_mp->next_mp = container_p->next_mp;
    } else if (parent_p != nullptr) {
        parent_p->firstChild_mp = container_p->next_mp;
    } else if (container_p->msg_mp != nullptr) {
        container_p->msg_mp->firstContainer() = container_p->next_mp;
    }
    if (container_p->next_mp != nullptr) {
        container_p->next_mp->prev_mp = container_p->prev_mp;
    }
    if (parent_p != nullptr && container_p->writer_m) {
        --parent_p->openWriters_m;
    }
    const auto handle = reinterpret_cast<std::uintptr_t>(container_p->handle_m);
    container_p->resetFields();
    table().release(handle);
}

void Container::closeAll(Message& msg) noexcept {
    while (msg.firstContainer() != nullptr) {
        close(msg.firstContainer());
    }
}

void Container::closeAll(Message& msg, PartId part) noexcept {
    Container* root_p = msg.firstContainer();
    while (root_p != nullptr) {
        Container* next_p = root_p->next_mp;
        if (root_p->part_m == part) {
            close(root_p);
        }
        root_p = next_p;
    }
}

void Container::resetFields() noexcept {
    handle_m = nullptr;
    kind_m = ZORCLIENT_MAP;
    writer_m = false;
    msg_mp = nullptr;
    part_m = PartId::ATTACHMENT;
    buffer_mp = nullptr;
    bufferCapacity_m = 0;
    offset_m = 0;
    cursor_m = 0;
    openWriters_m = 0;
    parent_mp = nullptr;
    firstChild_mp = nullptr;
    prev_mp = nullptr;
    next_mp = nullptr;
}

// ---- Bytes ----------------------------------------------------------------------------

Container::Storage Container::storage() const noexcept {
    if (msg_mp != nullptr) {
        const Part& part = msg_mp->part(part_m);
        return {part.data(), part.present() ? part.size() : 0};
    }
    // The root of a caller's buffer is at its start; its length is what is in use.
    std::size_t used = FieldCodec::containerSize(buffer_mp);
    return {buffer_mp, used < bufferCapacity_m ? used : bufferCapacity_m};
}

bool Container::bodyRange(std::size_t* begin_p, std::size_t* end_p) const noexcept {
    const Storage bytes = storage();
    if (bytes.bytes_p == nullptr || offset_m >= bytes.size) {
        return false;
    }
    const std::uint8_t* header_p = bytes.bytes_p + offset_m;
    const std::size_t header = 2 + (header_p[0] & 3);
    if ((header_p[0] >> 2) != kind_m || offset_m + header > bytes.size) {
        return false;
    }
    const std::uint64_t size = FieldCodec::getBigEndian(header_p + 1, static_cast<int>(header - 1));
    if (size < header || offset_m + size > bytes.size) {
        return false;
    }
    *begin_p = offset_m + header;
    *end_p = offset_m + static_cast<std::size_t>(size);
    return true;
}

bool Container::encoding(const std::uint8_t** bytes_p, std::uint32_t* size_p) const noexcept {
    std::size_t begin = 0;
    std::size_t end = 0;
    if (!bodyRange(&begin, &end)) {
        return false;
    }
    *bytes_p = storage().bytes_p + offset_m;
    *size_p = static_cast<std::uint32_t>(end - offset_m);
    return true;
}

// ---- Adding ---------------------------------------------------------------------------

zorClient_returnCode_t Container::checkWritable(const char* function_p, const char* name_p) const {
    if (!writer_m) {
        return LastError::fail(ZORCLIENT_SUBCODE_PARAM_CONFLICT,
                               "%s: the %s was opened for reading; fields are added to a %s "
                               "being built",
                               function_p, kindName(kind_m), kindName(kind_m));
    }
    if (openWriters_m > 0) {
        return LastError::fail(ZORCLIENT_SUBCODE_PARAM_CONFLICT,
                               "%s: a sub-map or sub-stream of this %s is still open; close it "
                               "first",
                               function_p, kindName(kind_m));
    }
    if (isMap() && name_p == nullptr) {
        return LastError::fail(ZORCLIENT_SUBCODE_PARAM_NULL_PTR,
                               "%s: name_p is null; every field of a map needs a name", function_p);
    }
    if (!isMap() && name_p != nullptr) {
        return LastError::fail(ZORCLIENT_SUBCODE_PARAM_OUT_OF_RANGE,
                               "%s: stream fields have no name; pass null instead of '%s'",
                               function_p, name_p);
    }
    return ZORCLIENT_OK;
}

zorClient_returnCode_t Container::reserve(const char* function_p, std::size_t size,
                                          std::uint8_t** out_p) {
    std::size_t begin = 0;
    std::size_t end = 0;
    if (!bodyRange(&begin, &end)) {
        return LastError::fail(ZORCLIENT_SUBCODE_MALFORMED_DATA,
                               "%s: the %s's bytes are no longer a well-formed %s", function_p,
                               kindName(kind_m), kindName(kind_m));
    }
    const Storage bytes = storage();
    if (end != bytes.size) {
        return LastError::fail(ZORCLIENT_SUBCODE_PARAM_CONFLICT,
                               "%s: fields were added behind this %s through another handle; "
                               "add through that one",
                               function_p, kindName(kind_m));
    }
    for (const Container* c_p = this; c_p != nullptr; c_p = c_p->parent_mp) {
        if (!FieldCodec::isGrowableContainer(bytes.bytes_p + c_p->offset_m,
                                             bytes.size - c_p->offset_m, c_p->kind_m)) {
            return LastError::fail(ZORCLIENT_SUBCODE_MALFORMED_DATA,
                                   "%s: this %s's encoding cannot grow", function_p,
                                   kindName(kind_m));
        }
    }
    if (bytes.size + size > FieldCodec::MAX_FIELD_SIZE) {
        return LastError::fail(ZORCLIENT_SUBCODE_PARAM_OUT_OF_RANGE,
                               "%s: the %s would grow beyond %zu bytes", function_p,
                               kindName(kind_m), FieldCodec::MAX_FIELD_SIZE);
    }
    if (msg_mp != nullptr) {
        Part& part = msg_mp->part(part_m);
        *out_p = part.reserve(size) + part.size();
        return ZORCLIENT_OK;
    }
    if (bytes.size + size > bufferCapacity_m) {
        return LastError::fail(ZORCLIENT_SUBCODE_INSUFFICIENT_SPACE,
                               "%s: the %s's buffer of %zu bytes has %zu bytes left, %zu needed",
                               function_p, kindName(kind_m), bufferCapacity_m,
                               bufferCapacity_m - bytes.size, size);
    }
    *out_p = buffer_mp + bytes.size;
    return ZORCLIENT_OK;
}

void Container::commit(std::size_t size) noexcept {
    std::uint8_t* bytes_p = buffer_mp;
    if (msg_mp != nullptr) {
        Part& part = msg_mp->part(part_m);
        bytes_p = part.writableData();
        part.commit(static_cast<std::uint32_t>(size));
    }
    for (const Container* c_p = this; c_p != nullptr; c_p = c_p->parent_mp) {
        std::uint8_t* header_p = bytes_p + c_p->offset_m;
        FieldCodec::setContainerSize(
            header_p, FieldCodec::containerSize(header_p) + static_cast<std::uint32_t>(size));
    }
}

// The name a field is appended under in a map: its text with the NUL, and the size of the
// string field that carries it. A stream's fields have none (text_p null, size 0).
struct Container::NameField {
    explicit NameField(const char* name_p) noexcept
        : text_p(name_p),
          length(name_p != nullptr ? std::strlen(name_p) + 1 : 0),
          size(name_p != nullptr ? FieldCodec::fieldSize(length) : 0) {}

    const char* text_p;
    std::size_t length;
    std::size_t size;  // 0 for a name too long to encode, too
};

template <typename Fill>
zorClient_returnCode_t Container::appendNamed(const char* function_p, const NameField& name,
                                              std::size_t payloadSize, Fill&& fill) {
    const Storage before = storage();
    std::uint8_t* out_p = nullptr;
    const zorClient_returnCode_t rc = reserve(function_p, name.size + payloadSize, &out_p);
    if (rc != ZORCLIENT_OK) {
        return rc;
    }
    const Relocation moved(before.bytes_p, before.size, storage().bytes_p);
    if (name.text_p != nullptr) {
        std::uint8_t* text_p = FieldCodec::writeHeader(out_p, ZORCLIENT_STRING, name.length);
        std::memcpy(text_p, moved(name.text_p), name.length);
        out_p += name.size;
    }
    fill(out_p, moved);
    commit(name.size + payloadSize);
    return ZORCLIENT_OK;
}

zorClient_returnCode_t Container::add(const char* function_p, const char* name_p, std::uint8_t code,
                                      const void* value_p, std::size_t valueSize,
                                      const void* tail_p, std::size_t tailSize) {
    const zorClient_returnCode_t rc = checkWritable(function_p, name_p);
    if (rc != ZORCLIENT_OK) {
        return rc;
    }
    const std::size_t fieldSize = FieldCodec::fieldSize(valueSize + tailSize);
    const NameField name(name_p);
    if (fieldSize == 0 || (name_p != nullptr && name.size == 0)) {
        return LastError::fail(ZORCLIENT_SUBCODE_PARAM_OUT_OF_RANGE,
                               "%s: a field of %zu bytes is too large to encode", function_p,
                               valueSize + tailSize);
    }
    return appendNamed(
        function_p, name, fieldSize, [&](std::uint8_t* out_p, const Relocation& moved) {
            std::uint8_t* valueOut_p = FieldCodec::writeHeader(out_p, code, valueSize + tailSize);
            if (valueSize > 0) {
                std::memcpy(valueOut_p, moved(value_p), valueSize);
            }
            if (tailSize > 0) {
                std::memcpy(valueOut_p + valueSize, moved(tail_p), tailSize);
            }
        });
}

zorClient_returnCode_t Container::addEncoded(const char* function_p, const char* name_p,
                                             const std::uint8_t* field_p, std::size_t size) {
    const zorClient_returnCode_t rc = checkWritable(function_p, name_p);
    if (rc != ZORCLIENT_OK) {
        return rc;
    }
    if (!FieldCodec::isSingleField(field_p, size)) {
        return LastError::fail(ZORCLIENT_SUBCODE_MALFORMED_DATA,
                               "%s: the %zu bytes are not one encoded field (a tag, a length "
                               "that counts the whole field, the value)",
                               function_p, size);
    }
    return appendNamed(function_p, NameField(name_p), size,
                       [&](std::uint8_t* out_p, const Relocation& moved) {
                           std::memcpy(out_p, moved(field_p), size);
                       });
}

zorClient_returnCode_t Container::openSub(const char* function_p, const char* name_p,
                                          std::uint8_t kind, Container** sub_p) {
    zorClient_returnCode_t rc = checkWritable(function_p, name_p);
    if (rc != ZORCLIENT_OK) {
        return rc;
    }
    Container* sub = acquireHandle();
    std::size_t subOffset = 0;
    try {
        rc = appendNamed(function_p, NameField(name_p), FieldCodec::CONTAINER_HEADER_SIZE,
                         [&](std::uint8_t* out_p, const Relocation&) {
                             FieldCodec::writeContainerHeader(out_p, kind,
                                                              FieldCodec::CONTAINER_HEADER_SIZE);
                             subOffset = static_cast<std::size_t>(out_p - storage().bytes_p);
                         });
    } catch (...) {
        table().release(reinterpret_cast<std::uintptr_t>(sub->handle_m));
        throw;
    }
    if (rc != ZORCLIENT_OK) {
        table().release(reinterpret_cast<std::uintptr_t>(sub->handle_m));
        return rc;
    }
    sub->kind_m = kind;
    sub->writer_m = true;
    sub->offset_m = subOffset;
    linkChild(sub);
    ++openWriters_m;
    *sub_p = sub;
    return ZORCLIENT_OK;
}

// ---- Reading --------------------------------------------------------------------------

zorClient_returnCode_t Container::readAt(const char* function_p, std::size_t at, std::size_t end,
                                         const char** name_p, FieldCodec::RawField* field_p,
                                         std::size_t* next_p) const {
    const std::uint8_t* bytes_p = storage().bytes_p;
    if (name_p != nullptr) {
        *name_p = nullptr;
    }
    if (isMap()) {
        FieldCodec::RawField name;
        if (FieldCodec::read(bytes_p + at, end - at, &name) != FieldCodec::Result::OK ||
            name.code != ZORCLIENT_STRING) {
            return LastError::fail(ZORCLIENT_SUBCODE_MALFORMED_DATA,
                                   "%s: the map has no well-formed field name at byte %zu",
                                   function_p, at - offset_m);
        }
        if (name_p != nullptr) {
            *name_p = reinterpret_cast<const char*>(name.value_p);
        }
        at += name.size;
    }
    if (FieldCodec::read(bytes_p + at, end - at, field_p) != FieldCodec::Result::OK) {
        return LastError::fail(ZORCLIENT_SUBCODE_MALFORMED_DATA,
                               "%s: the %s has no well-formed field at byte %zu", function_p,
                               kindName(kind_m), at - offset_m);
    }
    *next_p = at + field_p->size;
    return ZORCLIENT_OK;
}

zorClient_returnCode_t Container::toField(const FieldCodec::RawField& raw,
                                          zorClient_field_t* field_p) {
    FieldCodec::toPublicField(raw, field_p);
    if (field_p->type == ZORCLIENT_MAP || field_p->type == ZORCLIENT_STREAM) {
        // A view for reading, closed with this container at the latest.
        Container* view_p = acquireHandle();
        view_p->kind_m = raw.code;
        view_p->writer_m = false;
        view_p->offset_m = static_cast<std::size_t>(raw.begin_p - storage().bytes_p);
        linkChild(view_p);
        field_p->value.map = view_p->handle_m;
    }
    return ZORCLIENT_OK;
}

bool Container::hasNext() const noexcept {
    std::size_t begin = 0;
    std::size_t end = 0;
    return bodyRange(&begin, &end) && begin + cursor_m < end;
}

zorClient_returnCode_t Container::next(const char* function_p, zorClient_field_t* field_p,
                                       const char** name_p) {
    std::size_t begin = 0;
    std::size_t end = 0;
    if (!bodyRange(&begin, &end)) {
        return LastError::fail(ZORCLIENT_SUBCODE_MALFORMED_DATA,
                               "%s: the %s's bytes are not a well-formed %s", function_p,
                               kindName(kind_m), kindName(kind_m));
    }
    if (begin + cursor_m >= end) {
        if (name_p != nullptr) {
            *name_p = nullptr;
        }
        return LastError::failWithResult(ZORCLIENT_EOS, ZORCLIENT_SUBCODE_OK,
                                         "%s: no more fields in the %s", function_p,
                                         kindName(kind_m));
    }
    FieldCodec::RawField raw;
    std::size_t nextAt = 0;
    zorClient_returnCode_t rc = readAt(function_p, begin + cursor_m, end, name_p, &raw, &nextAt);
    if (rc != ZORCLIENT_OK) {
        return rc;
    }
    rc = toField(raw, field_p);
    if (rc == ZORCLIENT_OK) {
        cursor_m = nextAt - begin;
    }
    return rc;
}

zorClient_returnCode_t Container::find(const char* function_p, const char* name_p,
                                       zorClient_field_t* field_p) {
    if (!isMap()) {
        if (name_p != nullptr) {
            return LastError::fail(ZORCLIENT_SUBCODE_PARAM_OUT_OF_RANGE,
                                   "%s: stream fields have no name; pass null to read the next "
                                   "one instead of '%s'",
                                   function_p, name_p);
        }
        return next(function_p, field_p, nullptr);
    }
    if (name_p == nullptr) {
        return LastError::fail(ZORCLIENT_SUBCODE_PARAM_NULL_PTR,
                               "%s: name_p is null; map fields are read by name", function_p);
    }
    std::size_t begin = 0;
    std::size_t end = 0;
    if (!bodyRange(&begin, &end)) {
        return LastError::fail(ZORCLIENT_SUBCODE_MALFORMED_DATA,
                               "%s: the map's bytes are not a well-formed map", function_p);
    }
    for (std::size_t at = begin; at < end;) {
        const char* fieldName_p = nullptr;
        FieldCodec::RawField raw;
        std::size_t nextAt = 0;
        const zorClient_returnCode_t rc = readAt(function_p, at, end, &fieldName_p, &raw, &nextAt);
        if (rc != ZORCLIENT_OK) {
            return rc;
        }
        if (std::strcmp(fieldName_p, name_p) == 0) {
            return toField(raw, field_p);
        }
        at = nextAt;
    }
    return LastError::failWithResult(ZORCLIENT_NOT_FOUND, ZORCLIENT_SUBCODE_OK,
                                     "%s: the map has no field named '%s'", function_p, name_p);
}

}  // namespace zorvane::zorclient
