"""Which standard header declares which name, for the names that sources here use or may soon."""

NAMES = {
    "algorithm": """min max minmax clamp find find_if find_if_not find_end search count count_if equal mismatch copy copy_n
        copy_if copy_backward move_backward fill fill_n transform generate replace replace_if remove remove_if reverse rotate
        sort stable_sort partial_sort nth_element is_sorted unique partition stable_partition lower_bound upper_bound
        equal_range binary_search any_of all_of none_of for_each for_each_n adjacent_find min_element max_element
        minmax_element lexicographical_compare set_union set_intersection set_difference includes iter_swap swap_ranges shuffle
        merge inplace_merge next_permutation""",
    "any": "any any_cast bad_any_cast",
    "array": "array to_array",
    "atomic": "atomic atomic_flag atomic_thread_fence memory_order memory_order_relaxed memory_order_acquire "
    "memory_order_release memory_order_acq_rel memory_order_seq_cst",
    "bit": "bit_cast bit_width bit_ceil bit_floor countl_zero countr_zero popcount has_single_bit endian",
    "charconv": "from_chars to_chars chars_format",
    "chrono": "chrono",
    "cmath": """abs floor ceil round lround llround nearbyint trunc sqrt cbrt pow exp exp2 log log2 log10 sin cos tan asin
        acos atan atan2 hypot fmod remainder fma isfinite isnan isinf isnormal signbit copysign nan nanf lerp erf erfc modf
        frexp ldexp""",
    "compare": "weak_ordering strong_ordering partial_ordering",
    "concepts": "same_as derived_from convertible_to integral floating_point invocable",
    "condition_variable": "condition_variable condition_variable_any cv_status",
    "cctype": "toupper tolower isalnum isalpha isdigit isspace isxdigit isprint",
    "clocale": "setlocale",
    "csetjmp": "jmp_buf longjmp",
    "csignal": "signal raise sig_atomic_t",
    "cstdarg": "va_list",
    "cstddef": "size_t ptrdiff_t byte nullptr_t max_align_t",
    "cstdint": """int8_t int16_t int32_t int64_t uint8_t uint16_t uint32_t uint64_t intptr_t uintptr_t intmax_t uintmax_t
        int_fast32_t uint_fast32_t""",
    "cstdio": "FILE fopen fclose fread fwrite fputs puts printf fprintf snprintf vsnprintf fflush perror rename size_t",
    "cstdlib": "abs getenv malloc calloc realloc free aligned_alloc abort exit _Exit atexit strtol strtod system size_t",
    "cstring": "memcpy memmove memset memcmp memchr strlen strcmp strncmp strchr strstr strerror size_t",
    "ctime": "time_t tm clock clock_t time strftime gmtime localtime mktime size_t",
    "deque": "deque erase erase_if",
    "exception": "exception exception_ptr current_exception rethrow_exception make_exception_ptr terminate uncaught_exceptions",
    "filesystem": "filesystem",
    "fstream": "ifstream ofstream fstream",
    "functional": "function less greater equal_to hash identity invoke bind_front ref cref plus minus multiplies reference_wrapper",
    "future": "async future promise launch packaged_task",
    "initializer_list": "initializer_list",
    "iomanip": "setw setprecision setfill quoted",
    "ios": "ios ios_base streamsize hex dec fixed",
    "iostream": "cout cerr cin clog",
    "istream": "istream getline ws ios",
    "iterator": """back_inserter inserter istreambuf_iterator ostream_iterator advance distance next prev reverse_iterator
        make_move_iterator iterator_traits begin end cbegin cend rbegin rend size ssize data empty""",
    "latch": "latch",
    "limits": "numeric_limits",
    "list": "list",
    "locale": "locale numpunct toupper tolower",
    "map": "map multimap erase_if",
    "memory": """unique_ptr shared_ptr weak_ptr make_unique make_shared enable_shared_from_this dynamic_pointer_cast
        static_pointer_cast const_pointer_cast addressof destroy_at construct_at uninitialized_copy align allocator
        default_delete owner_less unique_ptr""",
    "mutex": "mutex recursive_mutex timed_mutex lock_guard unique_lock scoped_lock once_flag call_once adopt_lock defer_lock",
    "new": "bad_alloc nothrow launder align_val_t",
    "numbers": "numbers",
    "numeric": "accumulate iota gcd lcm reduce inner_product partial_sum midpoint transform_reduce",
    "optional": "optional nullopt nullopt_t make_optional bad_optional_access in_place",
    "ostream": "ostream endl flush",
    "queue": "queue priority_queue",
    "random": """mt19937 mt19937_64 uniform_real_distribution uniform_int_distribution normal_distribution random_device
        minstd_rand""",
    "semaphore": "counting_semaphore binary_semaphore",
    "set": "set multiset erase_if",
    "shared_mutex": "shared_mutex shared_lock",
    "span": "span as_bytes as_writable_bytes dynamic_extent",
    "sstream": "istringstream ostringstream stringstream",
    "stdexcept": "runtime_error logic_error invalid_argument out_of_range domain_error length_error overflow_error",
    "string": "string u16string u32string wstring basic_string to_string stoi stol stod stof stoul getline char_traits erase "
    "erase_if string_literals",
    "string_view": "string_view u16string_view basic_string_view string_view_literals",
    "system_error": "error_code errc system_error error_category generic_category system_category make_error_code",
    "thread": "thread jthread this_thread",
    "tuple": "tuple tie make_tuple tuple_element_t tuple_size_v apply forward_as_tuple ignore get",
    "type_traits": """is_same_v is_void_v is_reference_v is_floating_point_v is_integral_v is_enum_v is_base_of_v is_const_v
        is_convertible_v is_trivially_copyable_v is_unsigned_v is_signed_v is_invocable_v is_invocable_r_v is_pointer_v
        is_default_constructible_v is_constructible_v is_array_v conditional_t decay_t remove_cvref_t remove_reference_t
        remove_const_t remove_pointer_t enable_if_t invoke_result_t underlying_type_t common_type_t make_unsigned_t
        make_signed_t add_const_t void_t true_type false_type integral_constant bool_constant type_identity_t""",
    "typeindex": "type_index",
    "typeinfo": "type_info",
    "unordered_map": "unordered_map unordered_multimap erase_if",
    "unordered_set": "unordered_set erase_if",
    "utility": """move forward swap exchange pair make_pair as_const declval index_sequence make_index_sequence
        integer_sequence cmp_less cmp_equal in_range in_place piecewise_construct get to_underlying""",
    "variant": "variant monostate get get_if holds_alternative visit variant_size_v variant_alternative_t in_place bad_variant_access",
    "vector": "vector erase erase_if",
}
# Found in every container's header as well; `get` also comes with the array.
OF_EVERY_CONTAINER = set("begin end cbegin cend rbegin rend size ssize data empty swap".split())
CONTAINERS = "array deque list map set span string string_view unordered_map unordered_set vector".split()
# The first of several is the one to include.
PREFERRED = {"size_t": "cstddef", "abs": "cmath", "getline": "string", "get": "variant", "in_place": "optional",
             "erase": "vector", "erase_if": "vector", "toupper": "cctype", "tolower": "cctype", "swap": "utility",
             "ios": "ios"}
# What a header includes by the standard's word, or has always to show.
ALSO_GIVES = {"iostream": ["istream", "ostream", "ios"], "fstream": ["istream", "ostream", "ios", "string"],
              "sstream": ["istream", "ostream", "ios", "string"], "istream": ["ios"], "ostream": ["ios"],
              "iomanip": ["ios"], "string": ["string_view", "initializer_list"], "thread": ["compare"],
              "vector": ["initializer_list"], "map": ["initializer_list"], "set": ["initializer_list"],
              "array": ["tuple"], "filesystem": ["system_error"], "future": ["system_error"],
              "condition_variable": ["mutex"], "stdexcept": ["exception"], "new": ["exception"],
              "algorithm": ["initializer_list"], "charconv": ["system_error"]}


def headers_of():
    """Name to the headers that declare it, the preferred one first."""
    found = {}
    for header, names in NAMES.items():
        for name in names.split():
            found.setdefault(name, []).append(header)
    for name in OF_EVERY_CONTAINER:
        found[name] = found.get(name, []) + CONTAINERS
    found["get"].append("array")
    for name, header in PREFERRED.items():
        found[name].sort(key=lambda other: other != header)
    return found
