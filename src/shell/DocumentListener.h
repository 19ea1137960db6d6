// Who hears of document changes: the window adds, removes and shows tabs, the file monitor
// watches the files; the helper tells every listener through one TDocumentListeners.
#pragma once

#include "shell/Document.h"

#include <algorithm>
#include <functional>
#include <vector>

namespace zv {

// Told about document changes.
class IDocumentListener {
public:
    virtual ~IDocumentListener() = default;
    virtual void DocumentAdded(TDocument& doc) = 0;
    virtual void DocumentRemoved(TDocument& doc) = 0;
    virtual void DocumentActivated(TDocument& doc) = 0;
    virtual void DocumentReloaded(TDocument& doc) = 0;
    // The document's text reached its file (it may have a new name and be writable now).
    virtual void DocumentSaved(TDocument& doc) = 0;
    // The text was kept although its file changed or went away: it differs from the file
    // now, and the views mark it modified until it is saved.
    virtual void DocumentDiffersFromFile(TDocument& /*doc*/) {}
    // A followed document grows by what its file grew by: `append` adds the rows. The
    // primary listener runs it with its readers of the rows paused and its views told;
    // without one it is run as it is. Returns what `append` returned.
    virtual bool DocumentGrows(TDocument& /*doc*/, const std::function<bool()>& append) {
        return append();
    }
};

// Hands each event to the primary listener (the window), then to the others in the order
// they were added. A listener must be removed before it dies.
class TDocumentListeners : public IDocumentListener {
public:
    void SetPrimary(IDocumentListener* listener) { FPrimary = listener; }
    void Add(IDocumentListener* listener) { FOthers.push_back(listener); }
    void Remove(IDocumentListener* listener) { std::erase(FOthers, listener); }

    void DocumentAdded(TDocument& doc) override { Tell(&IDocumentListener::DocumentAdded, doc); }
    void DocumentRemoved(TDocument& doc) override {
        Tell(&IDocumentListener::DocumentRemoved, doc);
    }
    void DocumentActivated(TDocument& doc) override {
        Tell(&IDocumentListener::DocumentActivated, doc);
    }
    void DocumentReloaded(TDocument& doc) override {
        Tell(&IDocumentListener::DocumentReloaded, doc);
    }
    void DocumentSaved(TDocument& doc) override { Tell(&IDocumentListener::DocumentSaved, doc); }
    void DocumentDiffersFromFile(TDocument& doc) override {
        Tell(&IDocumentListener::DocumentDiffersFromFile, doc);
    }
    // Only the primary listener holds views of the rows.
    bool DocumentGrows(TDocument& doc, const std::function<bool()>& append) override {
        return FPrimary ? FPrimary->DocumentGrows(doc, append) : append();
    }

private:
    void Tell(void (IDocumentListener::*event)(TDocument&), TDocument& doc) {
        if (FPrimary)
            (FPrimary->*event)(doc);
        // A copy: a listener may remove itself while it is told.
        const std::vector<IDocumentListener*> others = FOthers;
        for (IDocumentListener* listener : others)
            (listener->*event)(doc);
    }

    IDocumentListener* FPrimary = nullptr;
    std::vector<IDocumentListener*> FOthers;
};

} // namespace zv
