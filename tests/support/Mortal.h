#pragma once

#include <qor/QORObject.h>

#include <string>
#include <utility>
#include <vector>

/// What happened, in order.
using EventLog = std::vector<std::string>;

/// A caller's own class over `Base` that notes its death, under the name that it was made with.
template <class Base>
class Mortal : public Base {
public:
    Mortal(EventLog& deaths, char const* title) : log(&deaths), label(title) { this->name = title; }
    Mortal(Mortal const&) = delete;
    Mortal& operator=(Mortal const&) = delete;
    ~Mortal() override { log->push_back(label); }

    std::string const& title() const { return label; }

private:
    EventLog* log;
    std::string label;
};

/// A new object of a library class with a name.
template <class Class>
Class* named(char const* name) {
    auto* const object = new Class;
    object->setName(name);
    return object;
}

/// A new object that notes its death.
template <class Class>
Mortal<Class>* mortal(EventLog& deaths, char const* name) {
    return new Mortal<Class>(deaths, name);
}
