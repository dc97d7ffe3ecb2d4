#pragma once

#include <type_traits>

// Base of every process-wide object. The accessor creates the object on first
// use; destroy() deletes it and clears the pointer, so that a restart inside the
// same process builds it afresh.
template <typename T>
class MSingleton
{
public:
    static T* instance()
    {
        if constexpr (std::is_default_constructible_v<T>) {
            if (!s_instance)
                s_instance = new T;
        }
        return s_instance;
    }

    static bool exists() { return s_instance != nullptr; }

    static void destroy()
    {
        T* object = s_instance;
        s_instance = nullptr;
        delete object;
    }

protected:
    // An object made by other means than instance() (MApplication lives on the
    // stack) registers itself here and unregisters when it dies.
    MSingleton()
    {
        if (!s_instance)
            s_instance = static_cast<T*>(this);
    }
    virtual ~MSingleton()
    {
        if (s_instance == static_cast<T*>(this))
            s_instance = nullptr;
    }
    MSingleton(const MSingleton&) = delete;
    MSingleton& operator=(const MSingleton&) = delete;

private:
    static inline T* s_instance = nullptr;
};
