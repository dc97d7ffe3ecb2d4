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
                registerInstance(new T);
        }
        return s_instance;
    }

    static bool exists() { return s_instance != nullptr; }

    static void destroy()
    {
        T* object = s_instance;
        s_instance = nullptr;
        s_base = nullptr;
        delete object;
    }

protected:
    MSingleton() = default;
    // The pointer is cleared by address: while this runs, the object is no
    // longer a T.
    virtual ~MSingleton()
    {
        if (s_base == this) {
            s_instance = nullptr;
            s_base = nullptr;
        }
    }

    // An object made by other means than instance() (MApplication lives on the
    // stack) registers itself once fully constructed.
    static void registerInstance(T* object)
    {
        if (s_instance)
            return;
        s_instance = object;
        s_base = object;
    }
    MSingleton(const MSingleton&) = delete;
    MSingleton& operator=(const MSingleton&) = delete;

private:
    static inline T* s_instance = nullptr;
    static inline const MSingleton* s_base = nullptr;
};
