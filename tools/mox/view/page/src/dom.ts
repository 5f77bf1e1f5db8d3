/** An element of the page that is known to be there. */
export function byId<T extends HTMLElement>(id: string): T {
    const found = document.getElementById(id);
    if (found === null) {
        throw new Error(`the page has no element ${id}`);
    }
    return found as T;
}

/** A new element with a text, which is never taken for anything else. */
export function element<K extends keyof HTMLElementTagNameMap>(
    name: K,
    text = "",
    className = "",
): HTMLElementTagNameMap[K] {
    const made = document.createElement(name);
    made.textContent = text;
    made.className = className;
    return made;
}

export function option(text: string, value: string, isDisabled = false): HTMLOptionElement {
    const made = element("option", text);
    made.value = value;
    made.disabled = isDisabled;
    return made;
}
