/*
 * A bounded cache, written against the Java Language Specification.
 */
package sample.cache;

import java.util.LinkedHashMap;
import java.util.Map;

/** Keeps the most recently used entries, up to a limit. */
public final class Sample<K, V> extends LinkedHashMap<K, V> {
    private static final long serialVersionUID = 1L;
    private final int limit;

    public Sample(int limit) {
        super(16, 0.75f, true); // access order
        this.limit = limit;
    }

    @Override
    protected boolean removeEldestEntry(Map.Entry<K, V> eldest) {
        return size() > limit;
    }

    public static void main(String[] args) {
        var cache = new Sample<String, Integer>(2);
        cache.put("a", 1);
        cache.put("b", 0x2F);
        cache.get("a");
        cache.put("c", 3);
        char quote = '\'';
        String text = """
            Cached: "%s"
            """.formatted(cache.keySet());
        if (cache.containsKey("b") || quote != '"') {
            System.out.println(text + " // not a comment");
        } else {
            throw new IllegalStateException("unexpected");
        }
    }
}
