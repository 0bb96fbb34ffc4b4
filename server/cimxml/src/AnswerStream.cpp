// Enumeration answers written as the objects arrive. The buffer is handed
// on only between whole objects, so that an object whose writing fails can
// be taken back and the answer can still end well-formed.
#include "Envelope.h"
#include "ObjectWriter.h"

#include <vexa/cimxml/Codec.h>

#ifdef VEXA_KEPT_ENCODINGS
#include <vexa/cim/KeptEncoding.h>
#endif

#include <exception>
#include <stdexcept>

namespace vexa::cimxml {

using namespace detail;
using namespace Pegasus;

namespace {

// The forms an answer keeps with the objects it writes.
enum KeptForm : std::uint32_t {
    // INSTANCENAME of a path.
    INSTANCE_NAME_FORM = 1,
    // INSTANCE with every property, without class origins.
    WHOLE_INSTANCE_FORM = 2,
};

#ifdef VEXA_KEPT_ENCODINGS
// A value that embeds an instance can change inside without its holder
// knowing, so such an instance's form is not kept.
bool embedsObjects(const CIMConstInstance& instance) {
    for (Uint32 i = 0; i < instance.getPropertyCount(); i++) {
        if (embeddedObjectKind(instance.getProperty(i).getType()) != nullptr)
            return true;
    }
    return false;
}

bool embedsObjects(const CIMObjectPath&) { return false; }
#endif

// Writes what `write` makes of `object`, or copies the bytes kept from an
// earlier answer; a new form is kept when `keepable`.
template <class Object, class Write>
void writeKept(XmlWriter& out, const Object& object, KeptForm form, bool keepable, Write write) {
#ifdef VEXA_KEPT_ENCODINGS
    out.raw({}); // ends a pending start tag, which belongs to the element around
    if (keepable) {
        const std::string_view kept = vexa::cim::keptEncoding(object, form);
        if (!kept.empty()) {
            out.raw(kept);
            return;
        }
    }
    const size_t start = out.pending().size();
    write();
    if (keepable && !embedsObjects(object))
        vexa::cim::keepEncoding(object, form, out.pending().substr(start));
#else
    (void)out, (void)object, (void)form, (void)keepable;
    write();
#endif
}

} // namespace

struct AnswerStream::State {
    const Request& request;
    Flush flush;
    size_t chunkBytes;
    String host;
    String nameSpace;
    XmlWriter out;
    bool started = false;
    bool ended = false;
    // Set once a flush failed: the receiver is gone, and every later call
    // fails the same way so that whoever delivers stops.
    std::exception_ptr broken;

    void handOn() {
        if (broken)
            std::rethrow_exception(broken);
        started = true;
        try {
            flush(out.pending());
        } catch (...) {
            broken = std::current_exception();
            out.clearPending();
            throw;
        }
        out.clearPending();
    }

    template <class Write>
    void addObject(Write write) {
        if (broken)
            std::rethrow_exception(broken);
        if (ended)
            throw std::logic_error("object added to an answer that has ended");
        const XmlWriter::Mark mark = out.mark();
        try {
            write(out);
        } catch (...) {
            out.rollBack(mark);
            throw;
        }
        if (out.pending().size() >= chunkBytes)
            handOn();
    }

    const String& hostOf(const CIMObjectPath& path) const {
        return path.getHost().size() != 0 ? path.getHost() : host;
    }
    const String& namespaceOf(const CIMObjectPath& path) const {
        const String& own = path.getNameSpace().getString();
        return own.size() != 0 ? own : nameSpace;
    }
};

AnswerStream::AnswerStream(const Request& request, Flush flush, size_t chunkBytes,
                           const std::string& host, const std::string& nameSpace)
    : state_(new State{request, std::move(flush), chunkBytes,
                       String((host.empty() ? defaultHost() : host).c_str()),
                       String((nameSpace.empty() ? request.nameSpace : nameSpace).c_str()),
                       openResult(request), false, false, nullptr}) {
    if (request.extrinsic)
        throw std::logic_error("method results are not streamed");
}

AnswerStream::~AnswerStream() = default;

bool AnswerStream::started() const { return state_->started; }

void AnswerStream::addNamedInstance(const CIMConstInstance& instance,
                                    const PropertySelection& selection) {
    const bool classOrigin = state_->request.includeClassOrigin;
    const bool whole = !classOrigin && selection.selectsEverything();
    state_->addObject([&](XmlWriter& out) {
        out.open("VALUE.NAMEDINSTANCE");
        const CIMObjectPath& path = instance.getPath();
        writeKept(out, path, INSTANCE_NAME_FORM, true, [&] { writeInstanceName(out, path); });
        writeKept(out, instance, WHOLE_INSTANCE_FORM, whole,
                  [&] { writeInstance(out, instance, classOrigin, selection); });
        out.close();
    });
}

void AnswerStream::addInstanceName(const CIMObjectPath& path) {
    state_->addObject([&](XmlWriter& out) {
        writeKept(out, path, INSTANCE_NAME_FORM, true, [&] { writeInstanceName(out, path); });
    });
}

void AnswerStream::addObjectWithPath(const CIMObject& object, const PropertySelection& selection) {
    const State& state = *state_;
    state_->addObject([&](XmlWriter& out) {
        const CIMObjectPath& path = object.getPath();
        out.open("VALUE.OBJECTWITHPATH");
        if (object.isClass()) {
            writeClassPath(out, path, state.hostOf(path), state.namespaceOf(path));
            writeClass(out, CIMConstClass(object));
        } else {
            writeInstancePath(out, path, state.hostOf(path), state.namespaceOf(path));
            writeInstance(out, CIMConstInstance(object), state.request.includeClassOrigin,
                          selection);
        }
        out.close();
    });
}

void AnswerStream::addObjectPath(const CIMObjectPath& path) {
    const State& state = *state_;
    state_->addObject([&](XmlWriter& out) {
        out.open("OBJECTPATH");
        if (state.request.objectNameIsClass)
            writeClassPath(out, path, state.hostOf(path), state.namespaceOf(path));
        else
            writeInstancePath(out, path, state.hostOf(path), state.namespaceOf(path));
        out.close();
    });
}

void AnswerStream::finish() {
    if (state_->ended)
        return;
    state_->ended = true;
    endMessage(state_->out);
    state_->handOn();
}

void AnswerStream::fail(CIMStatusCode status, const std::string& description) {
    if (state_->ended)
        return;
    state_->ended = true;
    XmlWriter& out = state_->out;
    if (!state_->started) {
        const Request& request = state_->request;
        out.clearPending();
        out = XmlWriter();
        out.raw(errorMessage(request.messageId, request.methodName, false, status, description));
    } else {
        out.close(); // IRETURNVALUE
        writeError(out, status, description);
        endMessage(out);
    }
    state_->handOn();
}

} // namespace vexa::cimxml
